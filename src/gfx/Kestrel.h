// The service's view of Kestrel, the vendor's device library: the operations it needs and nothing more. The library is
// loaded at run time (KestrelHelper.h).
#pragma once

#include <cstdint>

namespace brisk::kestrel {

// 0, 1 and 2 are successes, everything from 3 on is a failure.
using Result = std::uint32_t;

constexpr Result kFailure = 3;

constexpr bool succeeded(Result result) {
    return result < kFailure;
}

// NOLINTBEGIN(readability-identifier-naming): the library's own names.

// Reference-counted: whoever obtains an object releases it. The destructor is the library's own.
struct IObject {
    virtual std::int32_t Acquire() = 0;
    virtual std::int32_t Release() = 0;

protected:
    ~IObject() = default;
};

struct IFps : IObject {
    virtual Result GetFps(std::int32_t* framesPerSecond) = 0;

protected:
    ~IFps() = default;
};

struct IPerformanceMonitoringServices : IObject {
    // The frame rate of the game that is running now.
    virtual Result GetCurrentFps(IFps** fps) = 0;

protected:
    ~IPerformanceMonitoringServices() = default;
};

struct Resolution {
    std::int32_t width;  // pixels
    std::int32_t height; // pixels
};

struct IDisplay : IObject {
    virtual Result GetNativeResolution(Resolution* resolution) = 0;
    virtual Result GetRefreshRate(double* hertz) = 0;

protected:
    ~IDisplay() = default;
};

// Lists are walked from Begin to End, the index past the last one.
struct IDisplayList : IObject {
    virtual std::uint32_t Size() = 0;
    virtual std::uint32_t Begin() = 0;
    virtual std::uint32_t End() = 0;
    virtual Result At(std::uint32_t index, IDisplay** display) = 0;

protected:
    ~IDisplayList() = default;
};

// Where a desktop lies on the whole screen area. The primary display's origin is (0, 0).
struct Point {
    std::int32_t x;
    std::int32_t y;
};

enum class DesktopType : std::uint32_t {
    Single = 0,
    Duplicate = 1,
    SpanView = 2, // one desktop over several displays
};

struct IDesktop : IObject {
    virtual Result GetTopLeft(Point* topLeft) = 0;
    virtual Result GetType(DesktopType* type) = 0;
    virtual Result GetDisplays(IDisplayList** displays) = 0;

protected:
    ~IDesktop() = default;
};

struct IDesktopList : IObject {
    virtual std::uint32_t Size() = 0;
    virtual std::uint32_t Begin() = 0;
    virtual std::uint32_t End() = 0;
    virtual Result At(std::uint32_t index, IDesktop** desktop) = 0;

protected:
    ~IDesktopList() = default;
};

struct IDesktopServices : IObject {
    virtual Result GetDesktops(IDesktopList** desktops) = 0;

protected:
    ~IDesktopServices() = default;
};

// The root of everything, from the library's start to its end.
struct ISystemServices : IObject {
    virtual Result GetDesktopServices(IDesktopServices** services) = 0;
    virtual Result GetPerformanceMonitoringServices(IPerformanceMonitoringServices** services) = 0;

protected:
    ~ISystemServices() = default;
};

// The entry points, each exported under its name with C linkage.
using KestrelQueryFullVersion = Result (*)(std::uint64_t* version);
using KestrelQueryVersion = Result (*)(const char** version);
using KestrelInitialize = Result (*)(std::uint64_t version, ISystemServices** services);
using KestrelInitializeWithIncompatibleDriver = Result (*)(std::uint64_t version, ISystemServices** services);
using KestrelInitializeWithCallerTarn = Result (*)(std::uint64_t version, ISystemServices** services,
                                                   void** tarnMapping, void* tarnContext, void* tarnAdapter);
using KestrelTerminate = Result (*)();

// NOLINTEND(readability-identifier-naming)

} // namespace brisk::kestrel
