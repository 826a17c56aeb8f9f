#include "support/kestrel/Objects.h"

namespace brisk::kestrelstandin {

namespace {

using namespace kestrel;

class Fps final : public Counted<IFps> {
public:
    Fps() : Counted("Fps") {}

    Result GetFps(std::int32_t* framesPerSecond) override {
        return tell("Fps.GetFps", framesPerSecond, [] { return Library::instance().nextFrames(); });
    }
};

class PerformanceMonitoringServices final : public Counted<IPerformanceMonitoringServices> {
public:
    PerformanceMonitoringServices() : Counted("PerformanceMonitoringServices") {}

    Result GetCurrentFps(IFps** fps) override { return give<Fps>("PerformanceMonitoringServices.GetCurrentFps", fps); }
};

class Display final : public Counted<IDisplay> {
public:
    explicit Display(const DisplayScript& display) : Counted("Display"), script(display) {}

    Result GetNativeResolution(Resolution* resolution) override {
        return tell("Display.GetNativeResolution", resolution, [this] { return script.native; });
    }

    Result GetRefreshRate(double* hertz) override {
        return tell("Display.GetRefreshRate", hertz, [this] { return script.hertz; });
    }

private:
    const DisplayScript script;
};

// A list whose indices begin where the script says.
template <class Interface, class Item, class ItemInterface, class ItemScript>
class List final : public Counted<Interface> {
public:
    List(const std::string& listName, const std::vector<ItemScript>& items)
        : Counted<Interface>(listName), scripts(items), first(Library::instance().script().firstIndex) {}

    std::uint32_t Size() override { return static_cast<std::uint32_t>(scripts.size()); }
    std::uint32_t Begin() override { return first; }
    std::uint32_t End() override { return first + Size(); }

    Result At(std::uint32_t index, ItemInterface** item) override {
        Library& library = Library::instance();
        const std::string number = std::string(" ").append(std::to_string(index));
        if (index < Begin() || index >= End()) {
            library.record("error " + this->name + ".At" + number + ": no such index");
            return kFailure;
        }
        const Answer answer = library.answer(this->name + ".At", number);
        if (answer.gives()) {
            *item = library.keep(std::make_unique<Item>(scripts[index - first]));
        }
        return answer.result;
    }

private:
    const std::vector<ItemScript> scripts;
    const std::uint32_t first;
};

using DisplayList = List<IDisplayList, Display, IDisplay, DisplayScript>;

class Desktop final : public Counted<IDesktop> {
public:
    explicit Desktop(const DesktopScript& desktop) : Counted("Desktop"), script(desktop) {}

    Result GetTopLeft(Point* topLeft) override {
        return tell("Desktop.GetTopLeft", topLeft, [this] { return script.topLeft; });
    }

    Result GetType(DesktopType* type) override {
        return tell("Desktop.GetType", type, [this] { return script.type; });
    }

    Result GetDisplays(IDisplayList** displays) override {
        return give<DisplayList>("Desktop.GetDisplays", displays, std::string("DisplayList"), script.displays);
    }

private:
    const DesktopScript script;
};

using DesktopList = List<IDesktopList, Desktop, IDesktop, DesktopScript>;

class DesktopServices final : public Counted<IDesktopServices> {
public:
    DesktopServices() : Counted("DesktopServices") {}

    Result GetDesktops(IDesktopList** desktops) override {
        return give<DesktopList>("DesktopServices.GetDesktops", desktops, std::string("DesktopList"),
                                 Library::instance().script().desktops);
    }
};

class SystemServices final : public Counted<ISystemServices> {
public:
    SystemServices() : Counted("SystemServices") {}

    Result GetDesktopServices(IDesktopServices** services) override {
        return give<DesktopServices>("SystemServices.GetDesktopServices", services);
    }

    Result GetPerformanceMonitoringServices(IPerformanceMonitoringServices** services) override {
        return give<PerformanceMonitoringServices>("SystemServices.GetPerformanceMonitoringServices", services);
    }
};

} // namespace

ISystemServices* systemServices() {
    return Library::instance().keep(std::make_unique<SystemServices>());
}

} // namespace brisk::kestrelstandin
