#include "tools/titles/GoldenFiles.h"

#include "base/TextEncoding.h"
#include "tools/titles/InputFile.h"
#include "tools/titles/LineDiff.h"

#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace brisk::workbench {

namespace {

namespace fs = std::filesystem;

std::string diffFile(const std::string& name, const std::string* expected, const std::string* actual) {
    const std::string head = "--- expected/" + name + "\n+++ actual/" + name + '\n';
    if (!actual) {
        return head + "the file is not there\n";
    }
    if (!expected) {
        return head + diffLines("", *actual);
    }
    const std::string diff = diffLines(*expected, *actual);
    return head + (diff.empty() ? "the files differ in their line ends alone\n" : diff);
}

bool isBelow(std::string_view path, std::string_view above) {
    const IgnoringCase isLess;
    const std::string_view begin = path.substr(0, above.size());
    return path.size() > above.size() && path[above.size()] == '\\' && !isLess(begin, above) && !isLess(above, begin);
}

} // namespace

std::string narrowPath(const fs::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

GoldenFiles readFiles(const std::string& folder) {
    GoldenFiles files;
    const fs::path root = toPath(folder);
    std::error_code error;
    if (!fs::is_directory(root, error)) {
        return files;
    }
    for (fs::recursive_directory_iterator entry(root, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->is_regular_file(error)) {
            const std::string name = narrowPath(entry->path().lexically_relative(root));
            files[name] = readInput(folder + "/" + name);
        }
    }
    if (error) {
        throw std::runtime_error("cannot read " + folder + ": " + error.message());
    }
    return files;
}

void writeFiles(const std::string& folder, const GoldenFiles& files) {
    for (const auto& [name, bytes] : files) {
        const fs::path path = toPath(folder + "/" + name);
        std::error_code error;
        fs::create_directories(path.parent_path(), error);
        std::ofstream stream(path, std::ios::binary);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        stream.close();
        if (!stream) {
            throw std::runtime_error("cannot write " + folder + "/" + name);
        }
    }
}

GoldenFiles changedFiles(const GoldenFiles& before, const GoldenFiles& now) {
    GoldenFiles changed;
    for (const auto& [name, bytes] : now) {
        const auto old = before.find(name);
        if (old == before.end() || old->second != bytes) {
            changed.emplace(name, bytes);
        }
    }
    return changed;
}

GoldenFiles overlaid(GoldenFiles before, const GoldenFiles& after) {
    for (const auto& [name, bytes] : after) {
        before.insert_or_assign(name, bytes);
    }
    return before;
}

std::string diffFiles(const GoldenFiles& expected, const GoldenFiles& actual) {
    std::string text;
    for (const auto& [name, bytes] : expected) {
        const auto found = actual.find(name);
        if (found == actual.end() || found->second != bytes) {
            text += diffFile(name, &bytes, found == actual.end() ? nullptr : &found->second);
        }
    }
    for (const auto& [name, bytes] : actual) {
        if (!expected.contains(name)) {
            text += diffFile(name, nullptr, &bytes);
        }
    }
    return text;
}

std::string normalizedExport(const std::string& bytes) {
    const std::optional<RegistryKeys> keys = readRegistryExport(bytes);
    return keys ? exportOf(*keys) : bytes;
}

std::string exportOf(const RegistryKeys& keys) {
    std::string text;
    for (auto each = keys.begin(); each != keys.end(); ++each) {
        const auto& [path, key] = *each;
        const auto next = std::next(each);
        // A key above another one is there without being named.
        if (!key.empty() || next == keys.end() || !isBelow(next->first, path)) {
            text += "\r\n[" + path + "]\r\n";
            const std::string values = describe(key);
            for (std::size_t begin = 0; begin < values.size();) {
                const std::size_t end = values.find('\n', begin);
                text += values.substr(begin, end - begin) + "\r\n";
                begin = end + 1;
            }
        }
    }
    // The older form has texts in bytes, as they stand here.
    const bool hasTextInBytes = text.find("=hex(1):") != std::string::npos ||
                                text.find("=hex(2):") != std::string::npos ||
                                text.find("=hex(7):") != std::string::npos;
    return (hasTextInBytes ? "REGEDIT4\r\n" : "Windows Registry Editor Version 5.00\r\n") + text;
}

} // namespace brisk::workbench
