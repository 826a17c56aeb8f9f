#include "tools/log/WhyJson.h"

namespace brisk::logbook {

void WhyJson::openDocument() {
    if (!isDocumentOpen) {
        json.beginObject();
        json.key("sessions");
        json.beginArray();
        isDocumentOpen = true;
    }
}

void WhyJson::open(const Session& session) {
    openDocument();
    if (!isOpen) {
        json.beginObject();
        json.member("log", log);
        json.member("number", session.number);
        json.key("games");
        json.beginArray();
        isOpen = true;
    }
}

void WhyJson::printGame(const Session& session, const Game& game) {
    open(session);
    write(json, session, game, facts());
    print(json.take());
}

void WhyJson::printSession(const Session& session) {
    open(session);
    json.endArray();
    writeMembers(json, session);
    json.endObject();
    isOpen = false;
    print(json.take());
}

void WhyJson::endLog(const LogReader& reader) {
    logs.push_back({log, reader.lineCount(), reader.strayCount(), reader.omittedSessions()});
}

void WhyJson::finish() {
    openDocument();
    json.endArray();
    json.key("logs");
    json.beginArray();
    for (const Log& one : logs) {
        json.beginObject();
        json.member("log", one.path);
        json.member("lines", one.lines);
        json.member("linesOfNoSession", one.strays);
        json.member("omittedSessions", one.omittedSessions);
        json.endObject();
    }
    json.endArray();
    json.member("offers", offers);
    json.endObject();
    print(json.take());
}

} // namespace brisk::logbook
