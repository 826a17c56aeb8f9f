#pragma once

#include "tools/titles/PreviewFindings.h"
#include "tools/titles/SourceText.h"

#include <array>
#include <cstddef>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// The findings of previews, gathered from title to title and from display to display.
class PreviewReport {
public:
    // The titles come from this database, which has to live as long.
    explicit PreviewReport(const SourceText& source) : database(source) {}

    // The findings of a title, which is this element of the database's array. What several displays have in common is
    // told once.
    void add(const TitlePreview& preview, std::size_t element);

    // Puts findings about the database to the title's key of that text. To be called once, before they are told.
    void locateKeys();

    // Each finding, and a line that counts them.
    void print(std::ostream& out, bool hasColours) const;

    nlohmann::ordered_json toJson() const;

    // Whether there is an error or a warning.
    bool complain() const;

private:
    struct Located {
        Finding finding;
        bool isInDatabase;
        std::shared_ptr<const SourceText> source; // of a place in the settings
        std::size_t element;
        std::string fieldKey;
    };

    const SourceText& sourceOf(const Located& each) const { return each.isInDatabase ? database : *each.source; }
    std::array<std::size_t, 3> count() const; // by severity

    const SourceText& database;
    std::vector<Located> findings;
    std::set<std::tuple<std::string, std::string, bool, std::size_t, std::string>> known;
};

} // namespace brisk::workbench
