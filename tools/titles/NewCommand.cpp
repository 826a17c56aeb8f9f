#include "tools/titles/Commands.h"
#include "tools/titles/InputFile.h"
#include "tools/titles/JsonLayout.h"
#include "tools/titles/NewTitle.h"
#include "tools/titles/VersionStrings.h"

#include "base/TextEncoding.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <utility>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

struct NewOptions {
    std::string executable;
    std::string settings;
    std::string format = "text";
};

std::string absolutePath(const std::string& path) {
    const std::u8string absolute = std::filesystem::absolute(toPath(path)).u8string();
    return {absolute.begin(), absolute.end()};
}

int runNew(const NewOptions& options) {
    NewTitleSources sources;
    if (!options.executable.empty()) {
        sources.executable = readInput(options.executable);
        sources.executablePath = absolutePath(options.executable);
    }
    if (!options.settings.empty()) {
        sources.settings = readSettingsFile(options.settings);
        sources.settingsPath = absolutePath(options.settings);
    }
    NewTitle made;
    try {
        made = makeTitle(sources);
    } catch (const ExecutableError& error) {
        throw std::runtime_error("cannot take " + options.executable + ": " + error.what());
    }
    if (options.format == "json") {
        std::cout << layOut(Json{{"title", made.title}, {"notes", made.notes}}) << '\n';
        return 0;
    }
    std::cout << layOutTitle(made.title) << '\n';
    for (const std::string& note : made.notes) {
        std::cerr << "brisktitles: " << note << '\n';
    }
    return 0;
}

} // namespace

void addNewCommand(CLI::App& program, int& exitCode) {
    const auto options = std::make_shared<NewOptions>();
    CLI::App* command = program.add_subcommand("new", "a title to begin with, from a game's executable and settings");
    command->add_option("--exe", options->executable, "the game's executable: its name, company and product are read")
        ->type_name("GAME.EXE");
    command->add_option("--file", options->settings, "its settings, where the game keeps them: their place is guessed")
        ->type_name("SETTINGS");
    command
        ->add_option("--format", options->format, "text: the title, and what is left to do on standard error; or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->footer("Examples:\n"
                    "  brisktitles new --exe \"C:\\Games\\Harbour\\StarlitHarbour.exe\" > title.json\n"
                    "  brisktitles new --exe Game.exe --file ~/.wine/drive_c/users/me/AppData/Local/Game/Settings.ini\n"
                    "The title is complete but for its \"id\" when standard error names nothing else.");
    command->callback([options, &exitCode] { exitCode = runNew(*options); });
}

} // namespace brisk::workbench
