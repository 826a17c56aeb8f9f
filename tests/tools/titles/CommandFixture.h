// What tests of whole commands stand on: a folder of their own, and what a command prints.
#pragma once

#include "support/TextFiles.h"
#include "tools/console/Program.h"

#include <filesystem>
#include <functional>
#include <iostream>
#include <random>
#include <sstream>
#include <string>

#include <gmock/gmock.h>

namespace brisk::workbench {

class CommandFixture : public ::testing::Test {
protected:
    ~CommandFixture() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    std::string in(const std::string& name) const { return (folder / name).generic_string(); }

    // Its path.
    std::string write(const std::string& name, const std::string& bytes) const {
        testing::writeFile(folder / name, bytes);
        return in(name);
    }

    std::string read(const std::string& name) const { return testing::readFile(folder / name); }

    // The command's exit code; what it prints is in `printed` and `complaint`.
    int capture(const std::function<int()>& command) {
        std::ostringstream out;
        std::ostringstream error;
        std::streambuf* const cout = std::cout.rdbuf(out.rdbuf());
        std::streambuf* const cerr = std::cerr.rdbuf(error.rdbuf());
        const int code = runProgram("brisktitles", [&](const Console& /*console*/) { return command(); });
        std::cout.rdbuf(cout);
        std::cerr.rdbuf(cerr);
        printed = out.str();
        complaint = error.str();
        return code;
    }

    const std::filesystem::path folder = createFolder();
    std::string printed;
    std::string complaint;

private:
    static std::filesystem::path createFolder() {
        std::random_device number;
        std::filesystem::path folder;
        do {
            folder = std::filesystem::temp_directory_path() / ("brisktitles-test-" + std::to_string(number()));
        } while (!std::filesystem::create_directory(folder));
        return folder;
    }
};

} // namespace brisk::workbench
