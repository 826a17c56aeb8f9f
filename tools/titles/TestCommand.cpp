#include "tools/titles/TestCommand.h"

#include "base/TextEncoding.h"
#include "tools/console/Words.h"
#include "tools/titles/GoldenService.h"
#include "tools/titles/Progress.h"
#include "tools/titles/TestOutput.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

namespace brisk::workbench {

namespace {

// With slashes, and none at its end.
std::string folderOf(const TestOptions& options) {
    std::string folder = options.folder;
    std::error_code error;
    if (!std::filesystem::is_directory(toPath(folder), error)) {
        throw std::runtime_error(folder + " is no folder");
    }
#ifdef _WIN32
    std::replace(folder.begin(), folder.end(), '\\', '/');
#endif
    while (folder.size() > 1 && folder.ends_with('/')) {
        folder.pop_back();
    }
    return folder;
}

void writeJunit(const std::string& path, const std::vector<GoldenResult>& results) {
    std::ofstream stream(toPath(path), std::ios::binary);
    stream << toJunit(results);
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + path);
    }
}

} // namespace

int runTest(const TestOptions& options) {
    GoldenOptions golden{options.accepts, {}};
    if (!options.service.empty()) {
        golden.service = serviceTrial(options.service);
    }
    const std::vector<std::string> titles = findTitleFolders(folderOf(options));
    if (titles.empty()) {
        throw std::runtime_error("no folder below " + options.folder + " holds a title.json");
    }
    const bool isJson = options.format == "json";
    std::vector<GoldenResult> results;
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    Progress progress(titles.size());
    for (std::size_t at = 0; at < titles.size(); ++at) {
        progress.advanceTo(at);
        std::vector<GoldenResult> ofTitle = runGoldenCases(titles[at], golden);
        for (const GoldenResult& result : ofTitle) {
            if (isJson) {
                json.push_back(toJson(result));
            } else {
                printResult(std::cout, result, options.hasColours);
            }
        }
        if (ofTitle.empty() && !isJson) {
            std::cout << "none  " << titles[at] << ": no case\n";
        }
        std::move(ofTitle.begin(), ofTitle.end(), std::back_inserter(results));
    }
    if (!options.junit.empty()) {
        writeJunit(options.junit, results);
    }
    const auto failed = static_cast<std::size_t>(std::count_if(
        results.begin(), results.end(), [](const GoldenResult& result) { return !result.failures.empty(); }));
    if (isJson) {
        const nlohmann::ordered_json document{
            {"cases", json}, {"titles", titles.size()}, {"passed", results.size() - failed}, {"failed", failed}};
        std::cout << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    } else {
        std::cout << counted(titles.size(), "title") << ", " << counted(results.size(), "case") << ", "
                  << counted(failed, "failure") << '\n';
    }
    const bool isUnreadable =
        std::any_of(results.begin(), results.end(), [](const GoldenResult& result) { return result.isUnreadable; });
    return isUnreadable ? 2 : failed > 0 ? 1 : 0;
}

} // namespace brisk::workbench
