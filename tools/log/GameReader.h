#pragma once

#include "tools/log/Game.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace brisk::logbook {

// Follows the games of one session through its lines. Lines of other handlers than a game's are not given to it.
class GameReader {
public:
    // Called with a game when a line has decided on it or on its offer's answer.
    explicit GameReader(std::function<void(const Game&)> decided) : onDecision(std::move(decided)) {}

    // Whether the line is one that a game's handlers write; it is taken then.
    bool feed(const LogLine& line);
    // A line of another handler of the service's window has come: what was judged is judged.
    void endHandler();
    // Nothing more comes.
    void close();

    bool hasReady() const { return !games.empty() && games.front().isOver; }
    Game takeReady();
    // How many stories are kept only because an earlier game's offer may still be answered.
    std::size_t keptCount() const { return games.size(); }
    // Gives up waiting for the first game's answer.
    void giveUpFirst();

    // Presses that no known offer can have brought.
    std::vector<ProvingLine> takeLoosePresses();

private:
    struct Entry {
        Game game;
        bool isOver = false;
    };

    Game& begin(const LogLine& line);
    Game& follow(const LogLine& line);
    Entry* entryOf(const Game* game);
    void end(Game* game);

    bool feedAnnouncement(const LogLine& line);
    bool feedTick(const LogLine& line);
    bool feedEnd(const LogLine& line);
    bool feedJudgement(const LogLine& line);
    bool feedPress(const LogLine& line);
    void announce(const LogLine& line);
    void rejectSecond(const LogLine& line);
    void accept(const LogLine& line);
    void switchTo(const LogLine& line);
    void takeSample(const LogLine& line);
    void endTick(const LogLine& line, TickOutcome outcome);
    bool adopt(const LogLine& line);
    void press(const LogLine& line, Answer answer);
    void note(Game& game, const LogLine& line);
    void decide(const Game& game);

    std::function<void(const Game&)> onDecision;
    // In the order of announcements. Their places in memory stay.
    std::deque<Entry> games;
    Game* announced = nullptr;    // nothing has been said of it yet
    Game* tracked = nullptr;      // between its announcement and its end
    Game* judged = nullptr;       // the lines of its end are being read
    std::unique_ptr<Game> orphan; // lines of an end whose game no line has told of
    Game* answerable = nullptr;   // its offer may be answered
    ProvingLine finishLine;
    bool isFinishing = false;
    bool hasFileName = true; // of the tick
    std::vector<ProvingLine> loosePresses;
};

} // namespace brisk::logbook
