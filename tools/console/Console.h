// The console that a program of tools/ prints to.
#pragma once

#include <memory>

namespace brisk {

// While it lives, UTF-8 text that goes to std::cout and std::cerr appears as it is on a Windows console, whatever its
// code page: the text is handed over as UTF-16. Files and pipes get the bytes. The program has one of it, made before
// anything is printed, on the main thread.
class Console {
public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    // Whether std::cout goes to a terminal that colours text by escape sequences.
    bool takesColours() const;

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace brisk
