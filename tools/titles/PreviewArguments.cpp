#include "tools/titles/Commands.h"
#include "tools/titles/PreviewCommand.h"

#include <memory>

namespace brisk::workbench {

void addPreviewCommand(CLI::App& program, int& exitCode, bool hasColours) {
    const auto options = std::make_shared<PreviewOptions>();
    CLI::App* command = program.add_subcommand("preview", "what the service would do to a game's settings, as a diff");
    command->add_option("DATABASE", options->database, "a title database")->required();
    command->add_option("--title", options->titles, "a title's binary or display name; may be repeated; all without it")
        ->type_name("NAME")
        ->expected(1)
        ->take_all();
    command->add_option("--file", options->file, "the title's text file")->type_name("FILE");
    command->add_option("--reg", options->registry, "an exported registry file that stands for the registry")
        ->type_name("FILE");
    command->add_option("--profile", options->profile, "a folder that stands for %USERPROFILE%, with AppData below it")
        ->type_name("DIR");
    command->add_option("--game-folder", options->gameFolder, "the folder of the game's executable, %APPDIR%")
        ->type_name("DIR");
    command
        ->add_option("--display", options->display,
                     "the display's resolution; without it 1920x1080, or this machine's where its files are looked at")
        ->type_name("WxH");
    command
        ->add_option(
            "--lower", options->lower,
            "the lower resolution that the service chose, or none; without it the next one below the display's")
        ->type_name("WxH|none");
    command->add_flag("--matrix", options->isMatrix, "on the usual displays, and what differs between them");
    command->add_option("--output", options->output, "receives the adjusted bytes of the title's text file")
        ->type_name("FILE");
    command->add_option("--format", options->format, "text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->footer("Examples:\n"
                    "  brisktitles preview titles_db.json --title StarlitHarbour.exe --file Settings.ini\n"
                    "  brisktitles preview titles_db.json --profile tests/profile --display 2560x1440 --lower none\n"
                    "  brisktitles preview titles_db.json --title Skyferry --reg settings.reg --matrix\n"
                    "  brisktitles.exe preview titles_db.json\n"
                    "Without --file, --reg and --profile, on Windows, this machine's own files and registry are read.\n"
                    "Nothing is written but the file of --output. docs/title-rules.md explains every finding.");
    command->callback([options, &exitCode, hasColours] {
        options->hasColours = hasColours;
        exitCode = runPreview(*options);
    });
}

} // namespace brisk::workbench
