#pragma once

#include "tools/log/Explanation.h"
#include "tools/log/WhyOutput.h"

namespace brisk::logbook {

// For reading, with colours on request.
class WhyText final : public WhyOutput {
public:
    WhyText(std::ostream& stream, const Selection& wanted, const DatabaseFacts* facts, bool hasColours)
        : WhyOutput(stream, wanted, facts), colours(hasColours) {}

    void endLog(const LogReader& reader) override;
    void finish() override {}

protected:
    void printGame(const Session& session, const Game& game) override;
    void printSession(const Session& session) override;

private:
    void open(const Session& session);
    std::string coloured(const char* colour, const std::string& text) const;

    bool colours;
    bool isOpen = false;
};

// The verdict's lines of text with their proof, each shifted by some blanks.
std::string toText(const Explanation& words, const std::string& shift);

} // namespace brisk::logbook
