#pragma once

#include <cstdint>
#include <string>

namespace brisk {

// Where a process's executable lies. Both empty when the process cannot be identified.
struct ProcessImage {
    std::string fileName;  // with extension, no directory
    std::string directory; // without a trailing separator
};

// Strings of an executable's version resource; each empty when it is missing. The service goes by the publisher;
// the others are what else a resource can tell of whose an executable is.
struct FileProperties {
    std::string productName;
    std::string companyName; // the publisher
    std::string legalCopyright;
    std::string fileVersion;
};

// The running executable's directory without a trailing separator; empty, with a log line, on failure.
std::string getModuleDirectory();

// The executable of another process. Neither logs nor throws.
ProcessImage getProcessImage(std::uint32_t processId);

// The version strings of the file at a full path, in the resource's first translation only. Neither logs nor throws.
FileProperties getFileProperties(const std::string& path);

} // namespace brisk
