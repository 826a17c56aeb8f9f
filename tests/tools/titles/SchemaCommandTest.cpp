#include "support/Places.h"
#include "support/TextFiles.h"
#include "tools/titles/CommandLine.h"
#include "tools/titles/Commands.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

std::string document() {
    std::string text = testing::readFile(testing::place(BRISK_SCHEMA));
    std::erase(text, '\r');
    return text;
}

TEST(SchemaCommandTest, PrintsTheDocument) {
    EXPECT_EQ(runCommand(addSchemaCommand, {"schema"}), (Answer{0, document(), ""}));
    EXPECT_EQ(runCommand(addSchemaCommand, {"schema", "--format", "json"}), (Answer{0, document(), ""}));
}

TEST(SchemaCommandTest, TitleInAFileOfItsOwnHasTheSameDefinitions) {
    const auto whole = nlohmann::ordered_json::parse(document());
    const Answer answer = runCommand(addSchemaCommand, {"schema", "--title"});
    EXPECT_EQ(answer.code, 0);
    EXPECT_EQ(nlohmann::ordered_json::parse(answer.out), (nlohmann::ordered_json{
                                                             {"$schema", "http://json-schema.org/draft-07/schema#"},
                                                             {"title", "A title in a file of its own"},
                                                             {"allOf", {{{"$ref", "#/definitions/title"}}}},
                                                             {"definitions", whole["definitions"]},
                                                         }));
}

TEST(SchemaCommandTest, HelpHasExamples) {
    EXPECT_THAT(runCommand(addSchemaCommand, {"schema", "--help"}).out,
                ::testing::HasSubstr("Examples:\n  brisktitles schema > titles_db.schema.json\n"));
}

TEST(SchemaCommandTest, UnknownFormatIsWrongUsage) {
    EXPECT_EQ(runCommand(addSchemaCommand, {"schema", "--format", "xml"}).code, 2);
}

} // namespace
} // namespace brisk::workbench
