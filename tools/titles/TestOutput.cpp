#include "tools/titles/TestOutput.h"

#include "tools/titles/PreviewWords.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace brisk::workbench {

namespace {

std::string folderName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

// XML 1.0 has no other control characters; bytes that are no UTF-8 are not looked for.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        switch (byte) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\n':
            result += "&#10;";
            break;
        default:
            result += code < 0x20 && byte != '\t' ? '?' : byte;
        }
    }
    return result;
}

std::string joined(const std::vector<std::string>& sentences) {
    std::string text;
    for (const std::string& each : sentences) {
        text += (text.empty() ? "" : "; ") + each;
    }
    return text;
}

// Two blanks in front of each line.
void printIndented(std::ostream& out, std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        out << "      " << withoutControls(line) << '\n';
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
}

} // namespace

void printResult(std::ostream& out, const GoldenResult& result, bool hasColours) {
    const bool hasPassed = result.failures.empty();
    const char* mark = !hasPassed ? "FAIL" : result.isAccepted ? "new " : "ok  ";
    const char* colour = !hasPassed ? "\x1B[1;31m" : result.isAccepted ? "\x1B[1;33m" : "\x1B[32m";
    out << (hasColours ? colour : "") << mark << (hasColours ? "\x1B[0m" : "") << "  " << folderName(result.title)
        << (result.name.empty() ? "" : "/" + result.name) << (result.verdict.empty() ? "" : ": " + result.verdict)
        << '\n';
    for (const std::string& failure : result.failures) {
        printIndented(out, failure);
    }
    printIndented(out, result.diff);
}

nlohmann::ordered_json toJson(const GoldenResult& result) {
    return {{"title", result.title},
            {"case", result.name},
            {"expectation", result.expectation},
            {"verdict", result.verdict},
            {"passed", result.failures.empty()},
            {"accepted", result.isAccepted},
            {"failures", result.failures},
            {"diff", result.diff}};
}

std::string toJunit(const std::vector<GoldenResult>& results) {
    std::map<std::string, std::vector<const GoldenResult*>> suites;
    for (const GoldenResult& result : results) {
        suites[result.title].push_back(&result);
    }
    const auto hasFailed = [](const GoldenResult* result) { return !result->failures.empty(); };
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
    for (const auto& [title, cases] : suites) {
        const std::string name = escaped(folderName(title));
        xml += "  <testsuite name=\"" + name + "\" tests=\"" + std::to_string(cases.size()) + "\" failures=\"" +
               std::to_string(std::count_if(cases.begin(), cases.end(), hasFailed)) + "\">\n";
        for (const GoldenResult* each : cases) {
            xml += "    <testcase classname=\"" + name + "\" name=\"" +
                   escaped(each->name.empty() ? "title.json" : each->name) + "\"";
            xml += each->failures.empty() ? "/>\n"
                                          : "><failure message=\"" + escaped(joined(each->failures)) + "\">" +
                                                escaped(each->diff) + "</failure></testcase>\n";
        }
        xml += "  </testsuite>\n";
    }
    return xml + "</testsuites>\n";
}

} // namespace brisk::workbench
