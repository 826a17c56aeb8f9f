#include "tools/titles/CommandLine.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <sstream>

#include <CLI/CLI.hpp>

namespace brisk::workbench {

namespace {

// Takes what is written to a stream.
class Redirection {
public:
    explicit Redirection(std::ostream& given) : stream(given), before(given.rdbuf(buffer.rdbuf())) {}
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;
    ~Redirection() { stream.rdbuf(before); }

    std::string text() const { return buffer.str(); }

private:
    std::ostringstream buffer;
    std::ostream& stream;
    std::streambuf* before;
};

int run(CLI::App& app, std::vector<std::string> arguments, const int& exitCode) {
    try {
        std::reverse(arguments.begin(), arguments.end());
        app.parse(arguments);
        return exitCode;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    } catch (const std::exception& error) {
        std::cerr << "brisktitles: " << error.what() << '\n';
        return 2;
    }
}

} // namespace

void PrintTo(const Answer& answer, std::ostream* out) {
    *out << "exit code " << answer.code << "\nout:\n" << answer.out << "error:\n" << answer.error;
}

Answer runCommand(void (*add)(CLI::App&, int&), const std::vector<std::string>& arguments) {
    int exitCode = -1;
    CLI::App app("", "brisktitles");
    app.require_subcommand(1);
    add(app, exitCode);
    const Redirection out(std::cout);
    const Redirection error(std::cerr);
    const int code = run(app, arguments, exitCode);
    return {code, out.text(), error.text()};
}

} // namespace brisk::workbench
