// Where the files lie that a test program uses.
#pragma once

#include <filesystem>

namespace brisk::testing {

// A file of the checkout or of the build, by its path from the checkout's folder on: the folder is the one in which the
// running program lies, here or wherever the self-test was unpacked. A whole path stays as it is.
std::filesystem::path place(const std::filesystem::path& fromCheckout);

} // namespace brisk::testing
