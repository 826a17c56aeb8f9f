#include "bench/Measurement.h"
#include "bench/PatternReferences.h"
#include "bench/Rows.h"
#include "bench/Samples.h"
#include "pattern/SettingPattern.h"

// Searching, replacing and compiling keys of title databases.

namespace brisk::bench {

namespace {

constexpr std::size_t kTextSize = 773'000;

struct Key {
    const char* text;
    double timesAsFast; // as std::regex
    double timesPcre;
};

constexpr Key kSearches[] = {
    {R"((\nResolutionWidth=)(\d+)())", 50, 6},
    {R"((\nNoSuchSetting=)(\d+)())", 50, 6},
    {R"(((?:^|\n)Width=)(\d+)())", 40, 8},
    {R"((\[Display\][^\[]*\nWidth=)(\d+)())", 24, 12},
    {R"((\bResolutionWidth\s*=\s*)(\d+)())", 24, 12},
    {R"((<resolution [^>]*width=")(\d+)("))", 24, 12},
    {R"(("width"\s*:\s*)(\d+)())", 24, 12},
    {R"(([A-Z]\w+Width=)(\d+)(\r\n))", 24, 12},
};

constexpr Key kReplacements[] = {
    {R"((\nResolutionWidth=)(\d+)())", 15, 6},
    {R"((Volume\d+=)(\d+)())", 15, 6},
    {R"((Option\d+ = )([^;\r\n]*)( ;))", 15, 6},
    {R"(((?:^|\n)Width=)(\d+)())", 15, 6},
    {R"((\[Display\][^\[]*\nWidth=)(\d+)())", 15, 6},
    {R"((\bResolutionWidth\s*=\s*)(\d+)())", 15, 6},
    {R"(("width"\s*:\s*)(\d+)())", 15, 6},
};

constexpr const char* kAnything[] = {R"(((?:.|\n)*?\nWidth=)(\d+)())", R"(((?:.*\n)*Width=)(\d+)())"};

void printSearch(const Key& key, const std::string& text) {
    const SettingPattern product(key.text);
    const auto search = [&] { static_cast<void>(product.search(text)); };
    const auto against = [&](const char* name, const PatternReference& reference, Bar bar) {
        require(product.search(text).has_value() == reference.search(text), key.text);
        compare(std::string("search `") + key.text + '`', search, name, [&] { reference.search(text); }, bar);
    };
    against("std::regex", *standardPattern(key.text), {Bar::Kind::TimesAsFast, key.timesAsFast});
    if (const auto pcre = pcrePattern(key.text)) {
        against("PCRE2 JIT", *pcre, {Bar::Kind::AtMost, key.timesPcre});
    }
}

void printReplacement(const Key& key, const std::string& text) {
    const SettingPattern product(key.text);
    const std::string format = "$1$991920$3";
    const auto replace = [&] { static_cast<void>(product.replace(text, format)); };
    const auto against = [&](const char* name, const PatternReference& reference, Bar bar) {
        require(product.replace(text, format) == reference.replace(text, "1920"), key.text);
        compare(
            std::string("replace `") + key.text + '`', replace, name, [&] { reference.replace(text, "1920"); }, bar);
    };
    against("std::regex", *standardPattern(key.text), {Bar::Kind::TimesAsFast, key.timesAsFast});
    if (const auto pcre = pcrePattern(key.text)) {
        against("PCRE2 JIT", *pcre, {Bar::Kind::AtMost, key.timesPcre});
    }
}

// 1 MB of text with the setting at the given place: a key that begins with anything, over a plain key that is found at
// the end.
void printAnything(const std::string& key, const char* place, const std::string& text, bool isThere) {
    const SettingPattern anything(key);
    const SettingPattern plain(R"((\nLastLine=)(\d+)())");
    require(anything.search(text).has_value() == isThere && plain.search(text).has_value(), key);
    const std::string name = " `" + key + "`, 1 MB, " + place;
    const Bar bar{Bar::Kind::AtMost, 10};
    compare(
        "search" + name, [&] { static_cast<void>(anything.search(text)); }, "a plain key",
        [&] { static_cast<void>(plain.search(text)); }, bar);
    compare(
        "replace" + name, [&] { static_cast<void>(anything.replace(text, "$1$997$3")); }, "a plain key",
        [&] { static_cast<void>(plain.replace(text, "$1$997$3")); }, bar);
}

void printAnythingRows() {
    std::string lines;
    while (lines.size() < 1'000'000) {
        lines += "Graphics.Option = 17 ; as is\n";
    }
    const std::string begin = "[Settings]\n";
    const std::string setting = "Width=1280\n";
    const std::string end = "LastLine=1\n";
    for (const char* const key : kAnything) {
        printAnything(key, "at the top", begin + setting + lines + end, true);
        printAnything(key, "at the end", begin + lines + setting + end, true);
        printAnything(key, "missing", begin + lines + end, false);
        printAnything(key, "without a number", begin + "Width=x\n" + lines + "Width=y\n" + end, false);
    }
}

} // namespace

void printPatternRows() {
    const std::string text = settingsText(kTextSize);
    for (const Key& key : kSearches) {
        printSearch(key, text);
    }
    for (const Key& key : kReplacements) {
        printReplacement(key, text);
    }
    printAnythingRows();
    for (const Key& key : kSearches) {
        // Where a fourth of it were translation, it would take 1.33 times as long as the library alone.
        compare(
            std::string("compile `") + key.text + '`', [&] { SettingPattern{key.text}; }, "Boost.Regex",
            [&] { boostPattern(key.text); }, {Bar::Kind::AtMost, 1.33});
    }
}

} // namespace brisk::bench
