#pragma once

#include "titles/TitleConfigAdapter.h"

#include <cstddef>
#include <string>
#include <vector>

namespace brisk::workbench {

// One setting that the service's code had an adapter write.
struct SettingWrite {
    std::string key;
    std::string text;
    bool isNumber;
};

// Where a value stands in a text. Both 0 in a registry.
struct ValuePlace {
    std::size_t begin;
    std::size_t end;
};

// Where a key finds values: the first ones, and how many there are.
struct KeyMatches {
    std::size_t count = 0;
    std::vector<ValuePlace> places;
};

// The settings of a title that lie in memory. The service's own code reads and writes them; nothing else is touched.
class PreviewAdapter : public TitleConfigAdapter {
public:
    // What the key finds, as writing would. Throws std::regex_error.
    virtual KeyMatches findMatches(const std::string& key) const = 0;
    // All that the service would read next time.
    virtual std::string snapshot() const = 0;

    std::vector<SettingWrite> writes;

protected:
    explicit PreviewAdapter(const TitleConfigAdapter& title) : TitleConfigAdapter(title) {}
    PreviewAdapter(const PreviewAdapter&) = default;
    PreviewAdapter& operator=(const PreviewAdapter&) = default;
    ~PreviewAdapter() = default;
};

} // namespace brisk::workbench
