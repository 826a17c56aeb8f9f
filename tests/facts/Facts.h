// What the product relies on and Wine cannot prove, each with a probe. Probes touch nothing but folders and a registry
// key of their own, which they remove, and processes that they start themselves.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

namespace brisk::facts {

enum class Verdict { Holds, DoesNot, CannotTell };

struct Answer {
    Verdict verdict;
    std::string seen;
};

// Whether it was so, and what was seen.
inline Answer holdsIf(bool isSo, std::string seen) {
    return {isSo ? Verdict::Holds : Verdict::DoesNot, std::move(seen)};
}
inline Answer cannotTell(std::string reason) {
    return {Verdict::CannotTell, std::move(reason)};
}

// docs/windows-facts.md has a row for each id.
struct Fact {
    const char* id;
    Answer (*probe)();
};

std::vector<Fact> nameFacts();
std::vector<Fact> fileFacts();
std::vector<Fact> registryFacts();
std::vector<Fact> windowFacts();
std::vector<Fact> notificationFacts();
// These show toasts and ask who sits there.
std::vector<Fact> toastFacts();

// The Windows it runs on, for whoever reads a report: build, language, code pages, display modes.
void describeMachine();

// For a copy of this program that a probe starts, or that waits for a logoff: --sleep, --window, --logoff.
int playPart(const std::wstring& part);

} // namespace brisk::facts
