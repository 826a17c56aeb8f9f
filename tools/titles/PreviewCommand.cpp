#include "tools/titles/PreviewCommand.h"

#include "base/TextEncoding.h"
#include "tools/titles/InputFile.h"
#include "tools/titles/MachineFiles.h"
#include "tools/titles/PreviewInput.h"
#include "tools/titles/PreviewOutput.h"
#include "tools/titles/PreviewReport.h"
#include "tools/titles/ProfileFiles.h"
#include "tools/titles/Progress.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace brisk::workbench {

namespace {

namespace fs = std::filesystem;

class Previewer {
public:
    Previewer(const PreviewOptions& given, const SourceText& source)
        : options(given), displays(chooseDisplays(given)), findings(source) {
        if (looksAtMachine(options)) {
            file = machineFiles();
        } else if (!options.file.empty()) {
            file = fileAt(options.file, readInput(options.file));
        } else {
            file = filesIn(options.profile, options.gameFolder);
        }
        if (!options.registry.empty()) {
            registry = readRegistryExport(readInput(options.registry), [this](std::size_t line) {
                std::cerr << "brisktitles: " << options.registry << ':' << line
                          << ": nothing that an export has; it is passed over, and its value counts as missing\n";
            });
            if (!registry) {
                throw std::runtime_error(options.registry + " is no exported registry file");
            }
        }
    }

    // Whether there is something to preview the title with; says on standard error what is missing.
    bool takes(const DatabaseTitle& title) const {
        if (looksAtMachine(options)) {
            return true;
        }
        const bool isRegistry = title.type == ConfigType::Registry;
        const bool hasSettings = isRegistry
                                     ? registry.has_value()
                                     : !options.file.empty() || !options.profile.empty() || !options.gameFolder.empty();
        if (!hasSettings && !options.titles.empty()) {
            throw std::runtime_error(title.title.binaryName +
                                     (isRegistry ? " keeps its settings in the registry: give --reg"
                                                 : " keeps its settings in a text file: give --file or --profile"));
        }
        return hasSettings;
    }

    void preview(const DatabaseTitle& title) {
        std::vector<TitlePreview> previews;
        for (const Display& display : displays) {
            previews.push_back(previewOn(title, display));
            findings.add(previews.back(), title.element);
        }
        if (options.format == "json") {
            for (std::size_t at = 0; at < previews.size(); ++at) {
                titles.push_back(toJson(previews[at], displays[at]));
            }
        } else if (options.isMatrix) {
            printMatrix(std::cout, displays, previews);
        } else {
            printPreview(std::cout, previews.front(), displays.front(), options.hasColours);
        }
        if (!options.output.empty()) {
            write(previews.front());
        }
    }

    // Prints the findings; whether there are any that count.
    bool finish() {
        findings.locateKeys();
        if (options.format == "json") {
            const nlohmann::ordered_json document{{"titles", titles}, {"findings", findings.toJson()}};
            std::cout << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
        } else {
            findings.print(std::cout, options.hasColours);
        }
        return findings.complain();
    }

private:
    TitlePreview previewOn(const DatabaseTitle& title, const Display& display) const {
        if (title.type == ConfigType::Registry) {
            RegistryPreviewAdapter adapter(title.title);
            const RegistryKeys own =
                looksAtMachine(options) ? machineKeys(title.title.configLocations) : RegistryKeys();
            adapter.registry = registry ? &*registry : &own;
            return previewRegistry(adapter, display);
        }
        TextPreviewAdapter adapter(title.title);
        adapter.source = file;
        if (!options.file.empty()) {
            adapter.configLocations = {options.file};
        }
        return previewText(adapter, options.gameFolder, display);
    }

    void write(const TitlePreview& preview) const {
        const fs::path output = toPath(options.output);
        for (const PreviewFile& each : preview.files) {
            if (each.isReadable && isSameFile(output, each.real)) {
                throw std::runtime_error("--output must not be the game's file " + each.location);
            }
        }
        std::ofstream stream(output, std::ios::binary);
        stream.write(preview.after.data(), static_cast<std::streamsize>(preview.after.size()));
        stream.close();
        if (!stream) {
            throw std::runtime_error("cannot write " + options.output);
        }
    }

    const PreviewOptions& options;
    std::vector<Display> displays;
    FileSource file;
    std::optional<RegistryKeys> registry;
    PreviewReport findings;
    nlohmann::ordered_json titles = nlohmann::ordered_json::array();
};

} // namespace

int runPreview(const PreviewOptions& options) {
    checkOptions(options);
    const SourceText database(options.database, readInput(options.database));
    const DatabaseTitles all = readDatabase(database, looksAtMachine(options)   ? machineFolders()
                                                      : options.profile.empty() ? UserFolders()
                                                                                : userFoldersIn(options.profile));
    std::vector<DatabaseTitle> titles = chooseTitles(all, options);
    Previewer previewer(options, database);
    std::erase_if(titles, [&previewer](const DatabaseTitle& title) { return !previewer.takes(title); });
    const auto texts = std::count_if(titles.begin(), titles.end(),
                                     [](const DatabaseTitle& title) { return title.type == ConfigType::TextFile; });
    if (!options.file.empty() && texts > 1 && options.titles.empty()) {
        throw std::runtime_error("the database has several titles with text files: say with --title whose file " +
                                 options.file + " is");
    }
    if (titles.empty()) {
        throw std::runtime_error("no title keeps its settings where they are given");
    }
    if (!options.output.empty() && (titles.size() != 1 || texts != 1)) {
        throw std::runtime_error("--output takes one text title: name it with --title");
    }
    {
        Progress progress(titles.size());
        for (std::size_t at = 0; at < titles.size(); ++at) {
            progress.advanceTo(at);
            previewer.preview(titles[at]);
        }
    }
    return previewer.finish() ? 1 : 0;
}

} // namespace brisk::workbench
