#include "tools/log/Follow.h"

#include "tools/console/Files.h"
#include "tools/log/Explanation.h"
#include "tools/log/LogReader.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <vector>

namespace brisk::logbook {

namespace {

class FollowOutput final : public VerdictSink {
public:
    explicit FollowOutput(std::ostream& stream) : out(stream) {}

    void onGame(const Session& /*session*/, const Game& /*game*/) override {}
    void onSession(const Session& session) override {
        if (!isCaughtUp) {
            pending.clear();
            return;
        }
        flush();
        print(std::string("The service has ended: ") + codeOf(session.end) + ". " + explain(session).verdict);
        hasEnded = session.end != SessionEnd::RunningAlready;
    }
    void onDecision(const Session& session, const Game& game) override {
        const Explanation words = explain(session, game);
        const std::string verdict =
            isOffered(game) ? std::string("offer. ") : std::string("no offer, ") + codeOf(findReason(game)) + ". ";
        pending[game.firstLine] =
            nameOf(game) + ": " + verdict + words.verdict + (words.next.empty() ? "" : " Next: " + words.next);
    }
    // Nothing more comes for now: a verdict is whole only with the lines that follow on its own.
    void flush() {
        for (const auto& [line, text] : pending) {
            print(text);
        }
        pending.clear();
        isCaughtUp = true;
    }

    bool hasEnded = false;

private:
    void print(const std::string& text) { out << text << std::endl; }

    std::ostream& out;
    bool isCaughtUp = false;                      // all that was there has been read
    std::map<std::uint64_t, std::string> pending; // by the game's first line
};

} // namespace

int follow(const std::string& path, std::ostream& out, const std::function<bool()>& pause) {
    const std::filesystem::path log = fromUtf8(path);
    if (!std::ifstream(log)) {
        return 2;
    }
    FollowOutput output(out);
    std::optional<LogReader> reader(std::in_place, output);
    std::vector<char> block(1 << 16);
    std::streamoff done = 0;
    do {
        // Opened anew each time: a stream that was at the end does not see on every system what is appended.
        std::ifstream file(log, std::ios::binary | std::ios::ate);
        if (file && file.tellg() < done) {
            // The log was deleted and has begun anew.
            reader.emplace(output);
            done = 0;
        }
        file.seekg(done);
        while (file.read(block.data(), static_cast<std::streamsize>(block.size())), file.gcount() > 0) {
            reader->feed({block.data(), static_cast<std::size_t>(file.gcount())});
            done += file.gcount();
        }
        output.flush();
    } while (!output.hasEnded && pause());
    return 0;
}

} // namespace brisk::logbook
