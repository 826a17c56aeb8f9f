#include "tools/titles/Commands.h"
#include "tools/titles/KeyCommand.h"

#include <memory>

namespace brisk::workbench {

void addKeyCommand(CLI::App& program, int& exitCode) {
    const auto options = std::make_shared<KeyOptions>();
    CLI::App* command =
        program.add_subcommand("key", "a key for a setting in a game's file, or what a key matches there");
    command->add_option("--file", options->file, "the game's file and the setting's line; with --raw the file alone")
        ->type_name("FILE:LINE")
        ->required();
    CLI::Option* value =
        command
            ->add_option("--value", options->value,
                         "which setting of the line, by its value; or, if none has it, the value that it is to get")
            ->type_name("TEXT");
    CLI::Option* raw = command->add_option("--raw", options->expression, "the matches of this expression, as it is")
                           ->type_name("EXPRESSION")
                           ->excludes(value);
    command->add_option("--format", options->format, "text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->footer("Examples:\n"
                    "  brisktitles key --file Settings.ini:12\n"
                    "  brisktitles key --file video.xml:3 --value 1080\n"
                    "  brisktitles key --raw \"(\\nWidth=)(\\d+)()\" --file Settings.ini\n"
                    "A digit below a character tells which group of the expression holds it.");
    command->callback([options, value, raw, &exitCode] {
        options->hasValue = value->count() > 0;
        options->isRaw = raw->count() > 0;
        exitCode = runKey(*options);
    });
}

} // namespace brisk::workbench
