// Runs a command of brisktitles inside the test's process.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace brisk::workbench {

struct Answer {
    int code = 0;
    std::string out;
    std::string error;

    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out);

// The arguments behind the program's name.
Answer runCommand(void (*add)(CLI::App&, int&), const std::vector<std::string>& arguments);

} // namespace brisk::workbench
