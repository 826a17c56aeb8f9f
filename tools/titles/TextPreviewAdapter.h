#pragma once

#include "titles/ConfigLocation.h"
#include "tools/titles/PreviewAdapter.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace brisk::workbench {

// What stands at one location of a text title.
struct PreviewFile {
    std::string location; // as it is printed
    bool isReadable = false;
    bool isWritable = false; // also where there is only a folder for it
    std::string bytes;
    std::filesystem::path real; // of a readable file
};

// Where text files are looked for and read from. Nothing writes to it.
struct FileSource {
    FileLookup lookup;
    std::function<PreviewFile(const std::string& location)> open;
};

// A text title whose files are kept in memory: reads and writes what the service would.
class TextPreviewAdapter final : public PreviewAdapter {
public:
    explicit TextPreviewAdapter(const TitleConfigAdapter& title) : PreviewAdapter(title) {}

    // Nothing without a source. The files are read on success.
    bool findConfig(const std::string& appDirectory) override;
    // Without files the content stays as it is: it may be set from outside.
    bool loadConfig() override;
    bool saveConfig() override;
    bool setValue(const std::string& key, const std::string& text) override;
    bool setIntValue(const std::string& key, std::int32_t number) override;
    std::int32_t getIntValue(const std::string& key, std::int32_t defaultNumber) override;
    std::string getValue(const std::string& key, const std::string& defaultText) override;
    // Reads what stands at the locations.
    void openFiles();
    KeyMatches findMatches(const std::string& key) const override;
    std::string snapshot() const override;

    // Null when no location is of that kind.
    const PreviewFile* fileToRead() const;
    const PreviewFile* fileToWrite() const;

    FileSource source;
    bool hasFiles = false;
    std::vector<PreviewFile> files; // one a location
    std::string content;

private:
    bool write(const std::string& key, const std::string& text, bool isNumber);
};

} // namespace brisk::workbench
