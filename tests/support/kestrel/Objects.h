// The library's objects behind the interfaces of gfx/Kestrel.h.
#pragma once

#include "gfx/Kestrel.h"
#include "support/kestrel/Library.h"

#include <memory>
#include <string>
#include <utility>

namespace brisk::kestrelstandin {

// An object whose references are counted, its own and those of the whole library. Made with one reference.
template <class Interface>
class Counted : public Interface {
public:
    explicit Counted(std::string objectName) : name(std::move(objectName)) { Counted::Acquire(); }

    std::int32_t Acquire() override {
        ++Library::instance().liveReferences;
        return ++references;
    }

    std::int32_t Release() override {
        Library& library = Library::instance();
        if (references == 0) {
            library.record("error " + name + " released once too often");
            return 0;
        }
        --library.liveReferences;
        if (--references == 0) {
            library.record("release " + name);
            if (!library.started) {
                library.record("error " + name + " released after KestrelTerminate");
            }
        }
        return references;
    }

protected:
    std::string name;

private:
    std::int32_t references = 0;
};

// Answers a call that fills in a value, which `value` gives.
template <class Value, class Source>
kestrel::Result tell(const std::string& call, Value* output, Source value) {
    const Answer answer = Library::instance().answer(call);
    if (answer.gives()) {
        *output = value();
    }
    return answer.result;
}

// Answers a call that gives a new object.
template <class Object, class Interface, class... Arguments>
kestrel::Result give(const std::string& call, Interface** output, const Arguments&... arguments) {
    return tell(call, output, [&] { return Library::instance().keep(std::make_unique<Object>(arguments...)); });
}

// What the start calls give.
kestrel::ISystemServices* systemServices();

} // namespace brisk::kestrelstandin
