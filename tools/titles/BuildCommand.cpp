#include "tools/console/Files.h"
#include "tools/console/Words.h"
#include "tools/titles/Commands.h"
#include "tools/titles/DatabaseBuild.h"
#include "tools/titles/FindingOutput.h"
#include "tools/titles/GoldenTest.h"
#include "tools/titles/InputFile.h"
#include "tools/titles/JsonLayout.h"
#include "tools/titles/TestOutput.h"

#include "base/TextEncoding.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

struct BuildOptions {
    std::string folder;
    std::string output;
    std::string format = "text";
    bool hasColours = false;
};

std::vector<std::string> findTitles(const std::string& folder) {
    std::error_code error;
    if (!std::filesystem::is_directory(toPath(folder), error)) {
        throw std::runtime_error(folder + " is no folder");
    }
    std::vector<std::string> titles = findTitleFolders(folder);
    if (titles.empty()) {
        throw std::runtime_error("no folder below " + folder + " holds a title.json");
    }
    return titles;
}

std::vector<SourceText> readTitleFiles(const std::vector<std::string>& titles) {
    std::vector<SourceText> sources;
    for (const std::string& title : titles) {
        const std::string file = title + "/title.json";
        auto bytes = readFile(file);
        if (!bytes) {
            throw std::runtime_error("cannot read " + file);
        }
        sources.emplace_back(file, std::move(*bytes));
    }
    return sources;
}

// The database must not take the place of what it is made of, whatever the path is spelled like or links to.
void refuseSource(const std::string& output, const std::vector<std::string>& titles) {
    if (toPath(output).filename() == "title.json") {
        throw std::runtime_error(output + " is the name of a title's own file; the database needs another one");
    }
    for (const std::string& title : titles) {
        std::error_code error;
        if (std::filesystem::equivalent(toPath(output), toPath(title + "/title.json"), error)) {
            throw std::runtime_error(output + " is " + title + "/title.json, which would be lost");
        }
    }
}

// Golden cases that do not come out as expected.
std::vector<GoldenResult> runCases(const std::vector<std::string>& titles) {
    std::vector<GoldenResult> failed;
    for (const std::string& title : titles) {
        for (GoldenResult& result : runGoldenCases(title, {})) {
            if (!result.failures.empty()) {
                failed.push_back(std::move(result));
            }
        }
    }
    return failed;
}

// The same on every system: text mode would add a CR to each line on Windows.
void write(const std::string& path, const std::string& bytes) {
    std::ofstream file(toPath(path), std::ios::binary);
    file << bytes;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

int runBuild(const BuildOptions& options) {
    const std::vector<std::string> titles = findTitles(options.folder);
    refuseSource(options.output, titles);
    const std::vector<SourceText> sources = readTitleFiles(titles);
    const DatabaseBuild build = buildDatabase(sources);
    const bool isJson = options.format == "json";
    std::array<std::size_t, 3> counts{}; // by severity
    Json findings = Json::array();
    for (const auto& [number, finding] : build.findings) {
        ++counts[static_cast<std::size_t>(finding.severity)];
        if (isJson) {
            findings.push_back(toJson(sources[number], finding));
        } else {
            printFinding(std::cout, sources[number], finding, options.hasColours);
        }
    }
    std::vector<GoldenResult> failed;
    if (counts[0] == 0) {
        failed = runCases(titles);
    }
    Json cases = Json::array();
    for (const GoldenResult& result : failed) {
        if (isJson) {
            cases.push_back(toJson(result));
        } else {
            printResult(std::cout, result, options.hasColours);
        }
    }
    const bool isRight = counts[0] == 0 && failed.empty();
    if (isRight) {
        write(options.output, build.database);
    }
    if (isJson) {
        std::cout << layOutTitle(Json{{"findings", findings},
                                      {"cases", cases},
                                      {"errors", counts[0]},
                                      {"warnings", counts[1]},
                                      {"titles", build.titles},
                                      {"output", isRight ? Json(options.output) : Json()}})
                  << '\n';
    } else {
        std::cout << counted(counts[0], "error") << ", " << counted(counts[1], "warning") << ", "
                  << counted(failed.size(), "failure") << ", " << counted(build.titles, "title")
                  << (isRight ? ": written to " + options.output : std::string(": nothing is written")) << '\n';
    }
    return isRight ? 0 : 1;
}

} // namespace

void addBuildCommand(CLI::App& program, int& exitCode, bool hasColours) {
    const auto options = std::make_shared<BuildOptions>();
    CLI::App* command = program.add_subcommand("build", "one database of titles that have a file each");
    command->add_option("FOLDER", options->folder, "the titles: every title.json below it")->required();
    command
        ->add_option("-o,--output", options->output,
                     "the database; written only where no title has an error and no case fails")
        ->type_name("FILE")
        ->required();
    command->add_option("--format", options->format, "text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->footer("Examples:\n"
                    "  brisktitles build titles -o titles_db.json\n"
                    "  brisktitles build titles -o titles_db.json --format json\n"
                    "The titles stand in the byte order of their binary names: the same titles give the same bytes.");
    command->callback([options, &exitCode, hasColours] {
        options->hasColours = hasColours;
        exitCode = runBuild(*options);
    });
}

} // namespace brisk::workbench
