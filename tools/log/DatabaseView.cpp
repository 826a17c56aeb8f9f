#include "tools/log/DatabaseView.h"

#include "tools/log/LineValues.h"
#include "tools/titles/Suggestion.h"

#include <algorithm>

namespace brisk::logbook {

namespace {

constexpr std::size_t kMaximumIds = 50;

std::string inLine(std::size_t line) {
    return "in line " + std::to_string(line);
}

void compareId(const Game& game, const DatabaseFacts& facts, DatabaseView& view) {
    view.isIdKnown = game.id && std::find(facts.ids.begin(), facts.ids.end(), *game.id) != facts.ids.end();
    if (findReason(game) != Reason::UnknownId) {
        return;
    }
    view.knownIds.assign(facts.ids.begin(),
                         facts.ids.begin() + static_cast<std::ptrdiff_t>(std::min(facts.ids.size(), kMaximumIds)));
    if (view.isIdKnown) {
        view.sentences.push_back("This database has the id" +
                                 (view.title ? ", " + inLine(view.title->line) : std::string()) +
                                 ": the service read another one, or an earlier state of this one.");
        return;
    }
    std::string ids;
    for (const std::uint32_t id : view.knownIds) {
        ids += (ids.empty() ? "" : ", ") + std::to_string(id);
    }
    view.sentences.push_back("The database's ids: " + (ids.empty() ? std::string("none") : ids) +
                             (facts.ids.size() > kMaximumIds ? ", ..." : "") + ".");
}

void compareExecutable(const Game& game, const DatabaseFacts& facts, DatabaseView& view) {
    if (game.binaryName.empty()) {
        return;
    }
    const TitleFacts* title = facts.find(game.binaryName);
    if (!title) {
        std::vector<std::string_view> names;
        for (const TitleFacts& one : facts.titles) {
            names.push_back(one.binaryName);
        }
        const std::string suggestion = workbench::didYouMean(game.binaryName, names);
        view.sentences.push_back("The database has no title with the binary name '" + game.binaryName + "'" +
                                 (suggestion.empty() ? "." : suggestion));
        if (view.title) {
            view.sentences.push_back("The title of id " + std::to_string(*game.id) + ", " + inLine(view.title->line) +
                                     ", has '" + view.title->binaryName + "'.");
        }
        return;
    }
    view.title = title;
    view.hasOtherPublisher = !game.publisher.empty() && game.publisher != title->publisher;
    if (view.hasOtherPublisher) {
        view.sentences.push_back("The database expects the publisher '" + title->publisher + "', " +
                                 inLine(title->publisherLine == 0 ? title->line : title->publisherLine) +
                                 "; the executable's is '" + game.publisher + "'.");
    } else if (findReason(game) == Reason::NotSupported && !game.proof.has(LineKind::CheckingPath) &&
               !game.proof.has(LineKind::CheckingRegistry)) {
        view.sentences.push_back("Binary name and publisher fit this database's title, " + inLine(title->line) +
                                 ": its locations lead nowhere, or the service read another database.");
    }
}

void findSettings(const Game& game, DatabaseView& view) {
    for (const ProvingLine& line : game.proof.of(LineKind::NotOptimal)) {
        const std::string_view wanted = behindLast(line.text, "' is not optimal '");
        std::string text(wanted.substr(0, wanted.rfind("'.")));
        auto fields = findFields(*view.title, text, game.nativeResolution, game.lowerResolution);
        if (!fields.empty()) {
            view.sentences.push_back("The setting that differs is " + std::string(fields.size() > 1 ? "one of: " : "") +
                                     [&fields] {
                                         std::string keys;
                                         for (const auto* field : fields) {
                                             keys += (keys.empty() ? "'" : ", '") + field->key + "', " +
                                                     inLine(field->line);
                                         }
                                         return keys;
                                     }() +
                                     ".");
        }
        view.settings.push_back({line, std::move(fields)});
    }
}

void findCondition(const Game& game, DatabaseView& view) {
    for (const LineKind kind : {LineKind::ConditionForbids, LineKind::ConditionMissing}) {
        for (const ProvingLine& line : game.proof.of(kind)) {
            for (const TitleFacts::Condition& condition : view.title->conditions) {
                if (!view.condition && line.text.find("with key '" + condition.key + "'") != std::string::npos) {
                    view.condition = &condition;
                    view.sentences.push_back("The condition stands " + inLine(condition.line) + " of the database.");
                }
            }
        }
    }
}

} // namespace

DatabaseView compare(const Game& game, const DatabaseFacts& facts) {
    DatabaseView view;
    view.title = game.id ? facts.find(*game.id) : nullptr;
    compareId(game, facts, view);
    compareExecutable(game, facts, view);
    if (view.title) {
        findSettings(game, view);
        findCondition(game, view);
    }
    return view;
}

} // namespace brisk::logbook
