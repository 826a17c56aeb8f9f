// windows-facts: probes on a real Windows what the product relies on and Wine cannot prove.
#include "Facts.h"

#include "base/TextEncoding.h"
#include "base/Version.h"
#include "tools/console/Console.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iomanip>
#include <iostream>

namespace {

using namespace brisk::facts;

constexpr char kHelp[] =
    "windows-facts: probes what Brisk relies on and only a real Windows can tell\n"
    "\n"
    "usage: windows-facts [FACT...]     all facts, or these\n"
    "       windows-facts --toasts      shows toasts, too, and asks what you see; takes some minutes\n"
    "       windows-facts --logoff      waits for a logoff, to be seen by the next run in the same folder\n"
    "       windows-facts --machine     tells of this machine only: build, language, code pages, displays\n"
    "       windows-facts --help        print this text\n"
    "\n"
    "docs/windows-facts.md tells what each fact means. Nothing of yours is changed.\n"
    "Exit code: 0 no fact is broken, 1 one is, 2 wrong usage.\n";

constexpr std::array kWords{"holds", "does not", "cannot tell"};

Answer probe(const Fact& fact) {
    try {
        return fact.probe();
    } catch (const std::exception& error) {
        return cannotTell(error.what());
    }
}

// Exit code.
int run(const std::vector<Fact>& facts) {
    std::array<int, 3> counts{};
    for (const Fact& fact : facts) {
        const Answer answer = probe(fact);
        const auto verdict = static_cast<std::size_t>(answer.verdict);
        ++counts[verdict];
        std::cout << std::left << std::setw(12) << kWords[verdict] << std::setw(24) << fact.id << answer.seen
                  << std::endl;
    }
    std::cout << counts[0] << " hold, " << counts[1] << " do not, " << counts[2] << " cannot be told" << std::endl;
    return counts[1] == 0 ? 0 : 1;
}

int start(const std::vector<std::wstring>& arguments) {
    if (arguments.size() == 1 &&
        (arguments[0] == L"--sleep" || arguments[0] == L"--window" || arguments[0] == L"--logoff")) {
        return playPart(arguments[0]);
    }
    if (arguments == std::vector<std::wstring>{L"--help"}) {
        std::cout << kHelp;
        return 0;
    }
    if (arguments == std::vector<std::wstring>{L"--machine"}) {
        describeMachine();
        return 0;
    }
    const bool withToasts = arguments == std::vector<std::wstring>{L"--toasts"};
    std::vector<Fact> facts;
    for (const auto part : {nameFacts, fileFacts, registryFacts, windowFacts, notificationFacts}) {
        const std::vector<Fact> more = part();
        facts.insert(facts.end(), more.begin(), more.end());
    }
    for (Fact fact : toastFacts()) {
        if (!withToasts) {
            fact.probe = [] { return cannotTell("start windows-facts --toasts"); };
        }
        facts.push_back(fact);
    }
    if (withToasts || arguments.empty()) {
        return run(facts);
    }
    std::vector<Fact> chosen;
    for (const std::wstring& argument : arguments) {
        const auto found = std::find_if(facts.begin(), facts.end(),
                                        [&](const Fact& fact) { return brisk::toNarrow(argument) == fact.id; });
        if (found == facts.end()) {
            std::cerr << "windows-facts: there is no fact '" << brisk::toNarrow(argument)
                      << "'\nTry: windows-facts --help\n";
            return 2;
        }
        chosen.push_back(*found);
    }
    return run(chosen);
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    const brisk::Console console;
    // A drive without a medium is an error, not a question to whoever sits there.
    SetErrorMode(SEM_FAILCRITICALERRORS);
    return start(std::vector<std::wstring>(argv + 1, argv + argc));
}
