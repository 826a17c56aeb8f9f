#include "pattern/SettingPattern.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <limits>
#include <regex>
#include <string>

// Compares SettingPattern with std::regex on one large settings text, both in the same run. Prints milliseconds (the
// best of some runs) and how many times as long std::regex takes. Keys on which std::regex would exhaust the stack are
// left out.

namespace {

using brisk::SettingPattern;

constexpr std::size_t textSize = 773'000;
constexpr int runs = 5;

std::string settingsText() {
    std::string text = "[Settings]\r\n";
    for (int number = 0; text.size() < textSize; ++number) {
        text +=
            "Graphics.Option" + std::to_string(number) + " = " + std::to_string(number * 7919 % 1000) + " ; as is\r\n";
        if (number % 100 == 0) {
            text += "Width" + std::to_string(number) + "=1280\r\n";
        }
    }
    return text + "ResolutionWidth=1280\r\n";
}

double bestMilliseconds(const std::function<void()>& work) {
    double best = std::numeric_limits<double>::max();
    for (int run = 0; run < runs; ++run) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
        best = std::min(best, time.count());
    }
    return best;
}

void compare(const char* name, const std::function<void()>& ours, const std::function<void()>& standard) {
    const double oursTime = bestMilliseconds(ours);
    const double standardTime = bestMilliseconds(standard);
    std::printf("  %-8s %10.4f ms   std::regex %10.4f ms   ratio %7.1f\n", name, oursTime, standardTime,
                standardTime / oursTime);
}

} // namespace

int main() {
    const std::string text = settingsText();
    const std::string format = "$1$991920$3";
    std::printf("text of %zu bytes\n", text.size());
    for (const char* const key : {
             R"((ResolutionWidth=)(\d+)())",
             R"((ResolutionWidth=)([0-9]+)(\r?\n|$))",
             R"((\bResolutionWidth\s*=\s*)(\d+)())",
             R"(([A-Z]\w+Width=)(\d+)(\r\n))",
             R"((Width\d+=)(\d+)())",
             R"((Option\d+ = )([^;\r\n]*)( ;))",
             R"((NoSuchSetting=)(\d+)())",
         }) {
        std::printf("%s\n", key);
        const SettingPattern ours(key);
        const std::regex standard(key);
        compare("compile", [key] { SettingPattern{key}; }, [key] { std::regex{key}; });
        compare(
            "search", [&] { static_cast<void>(ours.search(text)); },
            [&] {
                std::smatch match;
                std::regex_search(text, match, standard);
            });
        compare(
            "replace", [&] { static_cast<void>(ours.replace(text, format)); },
            [&] { static_cast<void>(std::regex_replace(text, standard, format)); });
    }
}
