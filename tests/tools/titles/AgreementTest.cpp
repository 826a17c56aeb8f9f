// The preview of random titles, texts and displays, against the service's title manager on real files and a real
// registry: the same answer, the same log lines, the same bytes.
#include "tools/titles/Preview.h"

#include "base/Log.h"
#include "support/Places.h"
#include "support/Sandbox.h"
#include "titles/TitleManager.h"
#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/LogCapture.h"
#include "tools/titles/ProfileFiles.h"
#include "tools/titles/RegistryExport.h"

#include <array>
#include <map>
#include <random>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

using Json = nlohmann::json;

constexpr char kKey[] = "Software\\Studio\\Game";

class AgreementTest : public ::testing::Test {
protected:
    template <class Choices>
    auto pick(const Choices& choices) {
        return choices[random() % std::size(choices)];
    }

    bool oneIn(unsigned count) { return random() % count == 0; }

    std::string randomText() {
        static constexpr std::array<std::string_view, 22> kLines{"[Display]",
                                                                 "[Upscaling]",
                                                                 "Width=1280",
                                                                 "Width=1920",
                                                                 "Width=",
                                                                 "Width=abc",
                                                                 "Width=99999999999",
                                                                 "MaxWidth=5",
                                                                 "Height=720",
                                                                 "Mode=Quality",
                                                                 "Mode=Off",
                                                                 "Mode=Very High",
                                                                 "; Mode=Off",
                                                                 "seta r_mode \"12\"",
                                                                 "<resolution width=\"1920\" height=\"1080\"/>",
                                                                 "fps = 60 ; comment",
                                                                 "Version=3",
                                                                 "Version=4",
                                                                 "Renderer=D3D12",
                                                                 "Renderer=",
                                                                 "",
                                                                 "\xC3\xA4=\xFF"};
        std::string text;
        for (unsigned left = random() % 12; left > 0; --left) {
            text += pick(kLines);
            text +=
                oneIn(30)
                    ? pick(std::array<std::string_view, 5>{"\r", "\x1A", std::string_view("\0", 1), "\r\r\n", "\n\n"})
                : oneIn(3) ? "\n"
                           : "\r\n";
        }
        return (oneIn(20) ? "\xEF\xBB\xBF" : "") + text;
    }

    std::string randomKey() {
        static constexpr std::array<std::string_view, 20> kKeys{"(\\nWidth=)(\\d+)()",
                                                                "(Width=)(\\d+)()",
                                                                "((?:^|\\n)Width=)(\\d+)()",
                                                                "(\\nHeight=)(\\d+)()",
                                                                "(\\nMode=)([^\\n]*)()",
                                                                "(\\nMode=)(\\w+)()",
                                                                "(seta r_mode \")(-?\\d+)(\")",
                                                                "(<resolution [^>]*width=\")(\\d+)(\")",
                                                                "(\\nfps *= *)(\\d+)()",
                                                                "(\\nVersion=)(\\d+)()",
                                                                "(\\nRenderer=)(\\w+)()",
                                                                "(Width=)(.*)()",
                                                                "(Width=)",
                                                                "Width=(\\d+)",
                                                                "(Width=)(\\w*)",
                                                                "",
                                                                "((a*)*b)",
                                                                "(Width",
                                                                "(\\[Upscaling\\]\\n)()()",
                                                                "($)()()"};
        return std::string(pick(kKeys));
    }

    Json randomValue() {
        static constexpr std::array<std::string_view, 7> kTexts{"Quality", "", "off", "$&x", "$1", "3", "a$"};
        static constexpr std::array<int, 5> kNumbers{0, 1, 1920, -1, 2147483647};
        return oneIn(2) ? Json(pick(kTexts)) : Json(pick(kNumbers));
    }

    Json randomTitle(bool isRegistry) {
        static constexpr std::array<std::string_view, 4> kNames{"Width", "Mode", "Height", "Version"};
        const auto key = [&] { return isRegistry ? std::string(pick(kNames)) : randomKey(); };
        Json fields = Json::array();
        for (unsigned left = random() % 4; left > 0; --left) {
            Json field{{"key", key()}, {"value", randomValue()}};
            if (oneIn(3)) {
                field["meta"] =
                    pick(std::array<std::string_view, 5>{"width", "height", "native_width", "native_height", "other"});
            }
            if (oneIn(3)) {
                field["create_key"] = key();
                field["create_value"] = pick(std::array<std::string_view, 4>{"\nMode=*", "Width=*\n", "*", "x"});
            }
            fields.push_back(field);
        }
        Json conditions = Json::array();
        for (unsigned left = oneIn(2) ? 0 : random() % 3; left > 0; --left) {
            Json presence = Json::array();
            for (unsigned values = random() % 3; values > 0; --values) {
                presence.push_back(randomValue());
            }
            conditions.push_back({{"key", key()}, {"presence", presence}, {"absence", oneIn(2)}});
        }
        return {{"config_type", isRegistry ? "reg" : "txt"},
                {"title_name", "The Game"},
                {"publisher", "Studio"},
                {"binary_name", "game.exe"},
                {"luma_version", oneIn(2) ? 1 : 0},
                {"config_fields", fields},
                {"patch_if", conditions}};
    }

    Display randomDisplay(bool isLuma) {
        const std::vector<Display> displays = usualDisplays();
        const Display& display = pick(displays);
        // Without a lower resolution only a LUMA title gets as far as the title manager.
        return display.lower || isLuma ? display : displayOf({1920, 1080});
    }

    std::string in(const char* name) const { return toNarrow(folder / name); }

    struct Outcome {
        bool isFound = false;
        bool isAdjusted = false;
        bool ends = false;
        std::string log;
    };

    Outcome runService(const Json& title, const Display& display) {
        testing::writeFile(folder / "titles_db.json", Json::array({title}).dump());
        LogCapture log;
        Outcome outcome;
        try {
            EXPECT_TRUE(manager.loadTitlesDatabase(folder.narrow()));
            manager.setNativeResolution(display.native.width, display.native.height);
            const Size lower = display.lower.value_or(Size{0, 0});
            manager.setResolution(lower.width, lower.height);
            outcome.isFound = manager.isTitleSupported("", "game.exe", "");
            outcome.isAdjusted =
                outcome.isFound && manager.isTitleNeedToBeOptimized("game.exe") && manager.optimizeTitle("game.exe");
        } catch (const std::exception& error) {
            outcome.ends = true;
            logLine("Brisk : ", error.what());
        }
        outcome.log = log.take();
        return outcome;
    }

    void expectSame(const TitlePreview& preview, const Outcome& service) {
        ASSERT_EQ(preview.passes.front().log, service.log);
        ASSERT_EQ(preview.isFound, service.isFound);
        ASSERT_EQ(preview.passes.front().verdict == Verdict::Adjusted, service.isAdjusted);
        ASSERT_EQ(preview.passes.front().verdict == Verdict::Ends, service.ends);
        ++verdicts[preview.passes.front().verdict];
    }

    TitleRecord recordOf(const Json& title) {
        return readTitles(SourceText("titles_db.json", Json::array({title}).dump()), {}).at("game.exe").title;
    }

    std::string bytesOf(const char* name) const {
        return std::filesystem::exists(folder / name) ? testing::readFile(folder / name) : "(none)";
    }

    void compareTexts(const Json& title, const Display& display) {
        TextPreviewAdapter adapter(recordOf(title));
        adapter.source = filesIn(folder.narrow(), "");
        const TitlePreview preview = previewText(adapter, "", display);
        const std::string one = bytesOf("one.cfg");
        const std::string two = bytesOf("two.cfg");
        const Outcome service = runService(title, display);
        expectSame(preview, service);
        if (HasFatalFailure()) {
            return;
        }
        const auto expected = [&](const char* name, const std::string& before) {
            return service.isAdjusted && preview.writtenLocation == in(name) ? preview.after : before;
        };
        ASSERT_EQ(bytesOf("one.cfg"), expected("one.cfg", one));
        ASSERT_EQ(bytesOf("two.cfg"), expected("two.cfg", two));
    }

    testing::TemporaryFolder folder;
    testing::SandboxHive hive;
    TitleManager manager;
    std::map<Verdict, int> verdicts; // that both gave
    std::mt19937 random{1009};
};

TEST_F(AgreementTest, OfRandomTextTitles) {
    for (int round = 0; round < 9000; ++round) {
        Json title = randomTitle(false);
        const Display display = randomDisplay(title["luma_version"] != 0);
        title["config_locations"] = oneIn(4) ? Json{in("one.cfg"), in("two.cfg")} : Json{in("two.cfg")};
        if (oneIn(20)) {
            title["config_locations"].insert(title["config_locations"].begin(), in("nowhere\\three.cfg"));
        }
        for (const char* name : {"one.cfg", "two.cfg"}) {
            std::filesystem::remove(folder / name);
            if (!oneIn(10)) {
                testing::writeFile(folder / name, randomText());
            }
        }
        compareTexts(title, display);
        if (HasFatalFailure()) {
            FAIL() << "round " << round << ": " << title.dump();
        }
    }
    // Enough of everything.
    for (const Verdict verdict :
         {Verdict::Adjusted, Verdict::Untouched, Verdict::Condition, Verdict::NotFound, Verdict::Ends}) {
        EXPECT_GT(verdicts[verdict], 300) << nameOf(verdict);
    }
}

// The parts of an entry, which a record separator parts.
std::vector<std::string> fieldsOf(const std::string& entry) {
    std::vector<std::string> fields;
    for (std::size_t begin = 0; begin <= entry.size();) {
        const std::size_t end = std::min(entry.find('\x1E', begin), entry.size());
        fields.push_back(entry.substr(begin, end - begin));
        begin = end + 1;
    }
    return fields;
}

std::vector<std::string> readCorpus(const char* name) {
    std::vector<std::string> entries;
    for (const auto& file : std::filesystem::directory_iterator(testing::place(BRISK_CORPUS) / name)) {
        entries.push_back(testing::readFile(file.path()));
    }
    return entries;
}

// Every title of the fuzzers' corpora, among them the examples, with a text of theirs.
TEST_F(AgreementTest, OfTheFuzzersCorpora) {
    const std::vector<std::string> texts = readCorpus("text_settings");
    std::size_t pairs = 0;
    for (const char* corpus : {"title_preview", "title_check", "title_database"}) {
        for (const std::string& entry : readCorpus(corpus)) {
            const std::vector<std::string> fields = fieldsOf(entry);
            const Json database = Json::parse(fields[0], nullptr, false);
            for (std::size_t at = 0; database.is_array() && at < std::min<std::size_t>(3, database.size()); ++at) {
                Json title = database[at];
                if (!title.is_object() || title.value("config_type", Json()) != "txt") {
                    continue;
                }
                title["binary_name"] = "game.exe";
                title["config_locations"] = {in("one.cfg")};
                // As text that is UTF-8.
                title = Json::parse(title.dump(-1, ' ', false, Json::error_handler_t::replace));
                testing::writeFile(folder / "one.cfg",
                                   fields.size() > 1 ? fields[1] : fieldsOf(texts[pairs % texts.size()])[0]);
                compareTexts(title, randomDisplay(recordOf(title).lumaVersion != 0));
                ASSERT_FALSE(HasFatalFailure()) << corpus << ": " << entry;
                ++pairs;
            }
        }
    }
    EXPECT_GT(pairs, 100U);
    for (const std::string& entry : texts) {
        const std::vector<std::string> fields = fieldsOf(entry);
        testing::writeFile(folder / "one.cfg", fields[0]);
        Json title = randomTitle(false);
        title["config_locations"] = {in("one.cfg")};
        title["config_fields"] = {{{"key", "(Width=)(-?\\d+)()"}, {"value", 7}}};
        compareTexts(title, displayOf({1920, 1080}));
        ASSERT_FALSE(HasFatalFailure()) << entry;
    }
}

TEST_F(AgreementTest, OfRandomRegistryTitles) {
    for (int round = 0; round < 1500; ++round) {
        Json title = randomTitle(true);
        const Display display = randomDisplay(title["luma_version"] != 0);
        title["config_locations"] = {oneIn(20) ? "HKEY_CURRENT_USER/Software/Nobody"
                                               : "HKEY_CURRENT_USER/Software/Studio/Game"};
        RegDeleteTreeA(HKEY_CURRENT_USER, kKey);
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, kKey, &key), ERROR_SUCCESS);
        std::string exported =
            std::string("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\") + kKey + "]\r\n";
        for (const char* name : {"Width", "Mode", "Height"}) {
            if (oneIn(2)) {
                const DWORD number = oneIn(2) ? 1920 : static_cast<DWORD>(random());
                RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
                char text[16];
                std::snprintf(text, sizeof text, "%08lx", number);
                exported += '"' + std::string(name) + "\"=dword:" + text + "\r\n";
            } else if (oneIn(2)) {
                const std::string text = pick(std::array<const char*, 5>{"Quality", "", "1", "abc", "with \xC3\xA4"});
                RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                               static_cast<DWORD>(text.size() + 1));
                exported += '"' + std::string(name) + "\"=\"" + text + "\"\r\n";
            }
        }
        const auto registry = readRegistryExport(exported);
        ASSERT_TRUE(registry);
        RegistryPreviewAdapter adapter(recordOf(title));
        adapter.registry = &*registry;
        const TitlePreview preview = previewRegistry(adapter, display);
        const Outcome service = runService(title, display);
        expectSame(preview, service);
        ASSERT_FALSE(HasFatalFailure()) << "round " << round << ": " << title.dump() << exported;
        if (preview.isFound) {
            RegistryKey values;
            for (DWORD index = 0;; ++index) {
                char name[64];
                DWORD nameSize = sizeof name;
                if (RegEnumValueA(key, index, name, &nameSize, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
                    break;
                }
                char data[256];
                DWORD size = sizeof data;
                DWORD type = 0;
                ASSERT_EQ(RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &size),
                          ERROR_SUCCESS);
                values[name] = {type, std::string(data, size)};
            }
            ASSERT_EQ(preview.after, describe(values)) << "round " << round << ": " << title.dump() << exported;
        }
        RegCloseKey(key);
    }
}

} // namespace
} // namespace brisk::workbench
