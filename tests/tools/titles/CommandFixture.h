// What tests of whole commands stand on: a folder of their own, and what a command prints.
#pragma once

#include "tools/console/Program.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>

#include <gmock/gmock.h>

namespace brisk::workbench {

class CommandFixture : public ::testing::Test {
protected:
    CommandFixture() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    ~CommandFixture() override { std::filesystem::remove_all(folder); }

    std::string in(const std::string& name) const { return (folder / name).generic_string(); }

    void write(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories((folder / name).parent_path());
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }

    std::string read(const std::string& name) const {
        std::ifstream file(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

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

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() /
        (std::string("brisk-") + ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name());
    std::string printed;
    std::string complaint;
};

} // namespace brisk::workbench
