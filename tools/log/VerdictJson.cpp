#include "tools/log/DatabaseView.h"
#include "tools/log/Explanation.h"
#include "tools/log/WhyJson.h"

namespace brisk::logbook {

namespace {

void write(JsonWriter& json, const char* name, const std::vector<ProvingLine>& lines) {
    json.key(name);
    json.beginArray();
    for (const ProvingLine& line : lines) {
        json.beginObject();
        json.member("line", line.line);
        json.member("text", line.text);
        if (line.times > 1) {
            json.member("times", line.times);
            json.member("lastLine", line.lastLine);
        }
        if (!line.time.empty()) {
            json.member("time", line.time);
        }
        json.endObject();
    }
    json.endArray();
}

void writeTimes(JsonWriter& json, const std::string& begin, const std::string& end) {
    if (!begin.empty()) {
        json.member("beginTime", begin);
        json.member("endTime", end);
    }
}

void writeTitle(JsonWriter& json, const TitleFacts* title) {
    json.key("title");
    if (!title) {
        json.null();
        return;
    }
    json.beginObject();
    json.member("line", std::uint64_t{title->line});
    json.member("id", title->id);
    json.member("binaryName", title->binaryName);
    json.member("titleName", title->titleName);
    json.member("publisher", title->publisher);
    json.endObject();
}

void writePublishers(JsonWriter& json, const Game& game, const TitleFacts* title) {
    json.member("foundPublisher", game.publisher);
    json.key("expectedPublisher");
    title ? json.value(title->publisher) : json.null();
    json.key("expectedPublisherLine");
    title && title->publisherLine > 0 ? json.value(std::uint64_t{title->publisherLine}) : json.null();
}

void writeSettings(JsonWriter& json, const DatabaseView& view) {
    json.key("notOptimal");
    json.beginArray();
    for (const DatabaseView::Setting& setting : view.settings) {
        json.beginObject();
        json.member("line", setting.line.line);
        json.member("text", setting.line.text);
        json.key("fields");
        json.beginArray();
        for (const TitleFacts::Field* field : setting.fields) {
            json.beginObject();
            json.member("key", field->key);
            json.member("line", std::uint64_t{field->line});
            json.endObject();
        }
        json.endArray();
        json.endObject();
    }
    json.endArray();
}

void writeDatabase(JsonWriter& json, const Game& game, const DatabaseFacts& facts) {
    const DatabaseView view = compare(game, facts);
    json.key("database");
    json.beginObject();
    writeTitle(json, view.title);
    json.member("isIdKnown", view.isIdKnown);
    if (findReason(game) == Reason::UnknownId) {
        json.key("knownIds");
        json.beginArray();
        for (const std::uint32_t id : view.knownIds) {
            json.value(id);
        }
        json.endArray();
    }
    if (!game.binaryName.empty()) {
        writePublishers(json, game, view.title);
    }
    writeSettings(json, view);
    if (view.condition) {
        json.key("condition");
        json.beginObject();
        json.member("key", view.condition->key);
        json.member("line", std::uint64_t{view.condition->line});
        json.endObject();
    }
    json.key("notes");
    json.beginArray();
    for (const std::string& sentence : view.sentences) {
        json.value(sentence);
    }
    json.endArray();
    json.endObject();
}

void writePass(JsonWriter& json, const Pass& pass) {
    json.beginObject();
    json.member("firstLine", pass.firstLine);
    json.member("lastLine", pass.lastLine);
    json.member("outcome", outcomeOf(pass));
    json.member("isToastRefused", pass.isToastRefused);
    json.member("isReadMorePressed", pass.isReadMore);
    json.key("titles");
    json.beginArray();
    for (const PassTitle& title : pass.titles) {
        json.beginObject();
        json.member("binaryName", title.binaryName);
        json.textMember("titleName", title.titleName);
        json.member("outcome", codeOf(title.outcome));
        write(json, "lines", title.lines);
        json.endObject();
    }
    json.endArray();
    json.member("omittedTitles", pass.omittedTitles);
    json.key("titleCounts");
    json.beginObject();
    for (const auto& [outcome, count] : pass.counts) {
        json.member(codeOf(outcome), count);
    }
    json.endObject();
    write(json, "lines", pass.lines);
    json.endObject();
}

} // namespace

void write(JsonWriter& json, const Session& session, const Game& game, const DatabaseFacts* database) {
    const Explanation words = explain(session, game);
    const bool isOffer = isOffered(game);
    json.beginObject();
    json.member("id", game.id);
    json.textMember("binaryName", game.binaryName);
    json.member("outcome", isOffer ? "offer" : "no-offer");
    json.member("reason", codeOf(findReason(game)));
    json.member("verdict", words.verdict);
    json.member("next", words.next);
    write(json, "lines", words.lines);
    json.key("alsoReasons");
    json.beginArray();
    for (const Reason reason : findFurtherReasons(game)) {
        json.value(codeOf(reason));
    }
    json.endArray();
    json.member("firstLine", game.firstLine);
    json.member("lastLine", game.lastLine);
    json.member("processId", game.processId);
    json.member("isFinished", game.isFinished);
    json.key("samples");
    json.beginObject();
    json.member("accepted", game.acceptedSamples);
    json.member("rejected", game.rejectedSamples);
    json.endObject();
    json.member("averageFps", game.averageFps);
    json.member("ratio", game.ratio);
    json.member("refreshRate", refreshRateOf(game));
    if (isOffer) {
        json.member("isShown", !game.proof.has(LineKind::ToastRefused));
        json.member("answer", codeOf(game.answer));
        json.member("isPatched", game.isPatched);
    }
    writeTimes(json, game.beginTime, game.endTime);
    if (database) {
        writeDatabase(json, game, *database);
    }
    json.endObject();
}

void writeMembers(JsonWriter& json, const Session& session) {
    const Explanation words = explain(session);
    json.member("end", codeOf(session.end));
    json.member("verdict", words.verdict);
    json.member("next", words.next);
    write(json, "lines", words.lines);
    json.member("firstLine", session.firstLine);
    json.member("lastLine", session.lastLine);
    json.textMember("version", session.version);
    json.textMember("error", session.error);
    json.member("processId", session.processId);
    json.member("frameRateSource", codeOf(session.source));
    json.key("parameters");
    json.beginObject();
    for (const auto& [flag, value] : session.parameters) {
        json.member(flag, value);
    }
    json.endObject();
    json.member("offers", session.offers);
    json.key("bulkPasses");
    json.beginArray();
    for (const Pass& pass : session.passes) {
        writePass(json, pass);
    }
    json.endArray();
    json.member("omittedBulkPasses", session.omittedPasses);
    json.key("unknownLines");
    json.beginObject();
    json.member("count", session.unknownCount);
    write(json, "lines", session.unknownLines);
    json.endObject();
    write(json, "loosePresses", session.loosePresses);
    writeTimes(json, session.beginTime, session.endTime);
    if (!session.head.empty()) {
        json.key("recording");
        json.beginArray();
        for (const auto& [name, value] : session.head) {
            json.beginObject();
            json.member("name", name);
            json.member("value", value);
            json.endObject();
        }
        json.endArray();
    }
}

} // namespace brisk::logbook
