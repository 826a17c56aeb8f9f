// Where the files lie that a test program uses.
#pragma once

#include <filesystem>

namespace brisk::testing {

// A file of the checkout or of the build, by its place when the tests were built. Where BRISK_TESTS_FOLDER is in the
// environment, that folder stands for the checkout: the self-test's programs run on another machine.
std::filesystem::path place(const std::filesystem::path& whenBuilt);

} // namespace brisk::testing
