#pragma once

#include "support/kestrel/Script.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace brisk::kestrelstandin {

// The stand-in's state from loading to unloading. One thread at a time.
class Library {
public:
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    // Reads the script and finds the record on first use.
    static Library& instance();

    const Script& script() const { return currentScript; }

    // Counts and records a call ("CALL ARGUMENT... -> CODE" and what is to stand behind) and tells its answer.
    Answer answer(const std::string& call, const std::string& arguments = {}, const std::string& behind = {});
    void record(const std::string& line) const;

    // The next rate of the series.
    std::int32_t nextFrames();

    // Objects stay in memory until the library is unloaded: a release too many shall be seen, not crash.
    template <class Object>
    Object* keep(std::unique_ptr<Object> object) {
        Object* const kept = object.get();
        objects.push_back(std::move(object));
        return kept;
    }

    unsigned liveReferences = 0;
    bool started = false;

private:
    Library();

    std::wstring recordFile;
    Script currentScript;
    std::string scriptError;
    std::map<std::string, unsigned> calls;
    std::size_t nextFrame = 0;
    std::vector<std::shared_ptr<void>> objects;
};

} // namespace brisk::kestrelstandin
