#include "fuzz/Fuzzing.h"

#include <filesystem>
#include <fstream>
#include <iterator>

// Runs a fuzzer once with each file of the folders named on the command line.
int main(int argc, char** argv) {
    unsigned count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
            std::fprintf(stderr, "%s\n", entry.path().c_str());
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++count;
        }
    }
    std::printf("%u inputs\n", count);
    return count == 0;
}
