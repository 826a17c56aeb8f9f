#include "tools/titles/PreviewFindings.h"

#include "tools/titles/SettingsText.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

class Faults {
public:
    explicit Faults(const TitlePreview& title) : preview(title) {}

    void find() {
        checkTextMode();
        for (const ConditionPreview& condition : preview.conditions) {
            checkEnd(condition.end, condition.condition.key, condition.matches, condition.current, "a condition's ");
            checkComments(condition.matches, "a condition's ");
        }
        for (const FieldPreview& field : preview.fields) {
            checkEnd(field.end, field.key, field.matches, field.current, "the ");
            checkComments(field.matches, "the ");
            checkSeveral(field);
            checkCreated(field);
        }
        checkPasses();
    }

    std::vector<PreviewFinding> found;

private:
    PreviewFinding& add(Finding finding) {
        PreviewFinding& added = found.emplace_back();
        added.finding = std::move(finding);
        return added;
    }

    void addAt(Severity severity, const char* rule, ValuePlace place, std::string message) {
        PreviewFinding& added = add({rule, severity, place.begin, place.end, std::move(message), preview.binaryName});
        added.isInDatabase = false;
    }

    void addAtKey(Severity severity, const char* rule, const std::string& key, std::string message) {
        PreviewFinding& added = add({rule, severity, 0, 0, std::move(message), preview.binaryName});
        added.isInDatabase = true;
        added.fieldKey = key;
    }

    // At the value where there is one to show, otherwise at the key.
    void addAtValue(Severity severity, const char* rule, const KeyMatches& matches, const std::string& key,
                    std::string message) {
        if (matches.places.empty()) {
            addAtKey(severity, rule, key, std::move(message));
        } else {
            addAt(severity, rule, matches.places.front(), std::move(message));
        }
    }

    bool isRewritten() const { return preview.passes.front().verdict == Verdict::Adjusted; }

    std::size_t lineOf(std::size_t place) const {
        return 1 + static_cast<std::size_t>(std::count(
                       preview.text.begin(), preview.text.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
    }

    void checkTextMode() {
        if (!preview.traits || !preview.isFound) {
            return;
        }
        const Severity severity = isRewritten() ? Severity::Error : Severity::Warning;
        const std::string when = isRewritten() ? "" : " when it is rewritten";
        if (preview.traits->isUtf16) {
            addAt(severity, "text-mode-harm", {0, 0},
                  "the file is UTF-16: keys find nothing in it, and it is damaged" + when);
        } else if (preview.traits->firstCtrlZ != std::string::npos) {
            addAt(severity, "text-mode-harm", {preview.text.size(), preview.text.size()},
                  "a 0x1A byte ends the text here: it and all that follows is lost" + when);
        } else if (preview.traits->firstNul != std::string::npos) {
            const std::size_t nul = preview.text.find('\0');
            addAt(Severity::Warning, "text-mode-harm", {nul, nul + 1},
                  "behind a NUL byte no setting is read, though it is written");
        }
    }

    void checkEnd(const std::optional<ServiceEnd>& end, const std::string& key, const KeyMatches& matches,
                  const std::string& current, const std::string& whose) {
        if (!end) {
            return;
        }
        const bool endsNow = preview.passes.front().verdict == Verdict::Ends;
        const std::string consequence =
            endsNow ? "; the service ends with \"Brisk : " + end->what + "\""
                    : "; where it is read, as soon as the settings before it are right, the service ends "
                      "with \"Brisk : " +
                          end->what + "\"";
        switch (end->reason) {
        case ServiceEnd::Reason::NoNumber:
            addAtValue(Severity::Error, "not-a-number", matches, key,
                       whose + "value \"" + current + "\" is no 32-bit number" + consequence);
            break;
        case ServiceEnd::Reason::GaveUp:
            addAtKey(Severity::Error, "pattern-gives-up", key,
                     "in this file the search for " + whose + "key takes too long and is given up" + consequence);
            break;
        case ServiceEnd::Reason::BadPattern:
            addAtKey(Severity::Error, "pattern-syntax", key, whose + "key is no regular expression" + consequence);
            break;
        case ServiceEnd::Reason::Other:
            addAtKey(Severity::Error, "pattern-gives-up", key, whose + "key cannot be used" + consequence);
        }
    }

    void checkComments(const KeyMatches& matches, const std::string& whose) {
        for (const ValuePlace& place : matches.places) {
            if (!preview.isRegistry && isInComment(preview.text, place.begin)) {
                addAt(Severity::Warning, "match-in-comment", place,
                      whose + "key finds a value in a comment, which the game does not read");
                return;
            }
        }
    }

    void checkSeveral(const FieldPreview& field) {
        if (field.matches.count > 1) {
            addAt(Severity::Warning, "several-matches", field.matches.places[1],
                  "the key finds this value, too, " + std::to_string(field.matches.count) +
                      " in all: writing changes every one of them, reading takes the first, in line " +
                      std::to_string(lineOf(field.matches.places[0].begin)));
        }
        if (field.outcome == FieldOutcome::Created && field.created.count > 1) {
            addAtKey(Severity::Error, "several-matches", field.key,
                     "\"create_key\" finds " + std::to_string(field.created.count) +
                         " places, and the setting is created at each of them");
        }
    }

    void checkCreated(const FieldPreview& field) {
        if (preview.isRegistry || field.outcome != FieldOutcome::Created || field.created.places.empty()) {
            return;
        }
        const std::size_t nameBegin = field.createdText.find_first_not_of("\r\n");
        if (nameBegin == std::string::npos) {
            return;
        }
        const std::string_view line = std::string_view(field.createdText).substr(nameBegin);
        const std::string name = nameInLine(line.substr(0, line.find('\n')));
        const std::size_t place = field.created.places.front().begin + nameBegin;
        if (name.empty() || countSettings(preview.textAfterFields, place, name) <= field.created.count) {
            return;
        }
        addAt(Severity::Error, "duplicate-created", field.created.places.front(),
              "\"" + name +
                  "\" is created here although the file has a setting of that name already, in a form that the key "
                  "does not find");
    }

    void checkPasses() {
        const auto changes = [](const FieldPreview& field) {
            return field.outcome == FieldOutcome::Changes || field.outcome == FieldOutcome::Created;
        };
        if (isRewritten() && !preview.fields.empty() &&
            std::none_of(preview.fields.begin(), preview.fields.end(), changes)) {
            addAtKey(Severity::Error, "nothing-matches", preview.fields.front().key,
                     std::string(preview.before == preview.after ? "nothing in the file" : "no setting of the file") +
                         " is changed, and the player is told that it was adjusted");
            return;
        }
        if (preview.settles) {
            checkSecondPass();
            return;
        }
        if (preview.readLocation != preview.writtenLocation && !preview.passes.back().changes) {
            addAtKey(Severity::Error, "never-settles", preview.fields.front().key,
                     "another file is written than is read: the title needs adjusting for ever");
            return;
        }
        for (const FieldPreview& field : preview.fields) {
            if (field.differsAtLast) {
                addUnsettled(field);
            }
        }
    }

    // A created number is the field's own, and the next adjustment sets the resolution: no other setting is to change
    // again.
    void checkSecondPass() {
        if (preview.passes.size() < 2 || preview.passes[1].verdict != Verdict::Adjusted || !preview.passes[1].changes) {
            return;
        }
        const auto again = [this](const std::string& key) {
            return std::find(preview.differAgain.begin(), preview.differAgain.end(), key) != preview.differAgain.end();
        };
        for (const FieldPreview& field : preview.fields) {
            const bool isResolution = field.field.value.empty() && !field.field.meta.empty();
            if (again(field.key) && !(isResolution && field.outcome == FieldOutcome::Created)) {
                addAtKey(Severity::Error, "adjusted-again", field.key,
                         "what is written is not what is read, and the next adjustment writes over it: with it goes "
                         "what stands behind it in the file");
            }
        }
    }

    bool grows() const {
        return preview.passes.size() > 2 && std::adjacent_find(preview.passes.begin(), preview.passes.end(),
                                                               [](const PassPreview& one, const PassPreview& next) {
                                                                   return next.size <= one.size;
                                                               }) == preview.passes.end();
    }

    void addUnsettled(const FieldPreview& field) {
        const std::string forEver =
            ": the title needs adjusting for ever, and the player is told each time that it was adjusted";
        if (grows()) {
            addAtKey(Severity::Error, "grows", field.key,
                     "what is written is not found again, and the file grows each time" + forEver);
        } else if (field.outcome == FieldOutcome::Missing) {
            addAtKey(Severity::Error, "never-settles", field.key,
                     (field.field.createKey.empty()
                          ? "the setting is missing, and there is no \"create_key\""
                          : "the setting is missing, and \"create_key\" does not find its place") +
                         forEver);
        } else {
            addAtValue(Severity::Error, "never-settles", field.matches, field.key,
                       "what is written here is not what is read afterwards" + forEver);
        }
    }

    const TitlePreview& preview;
};

} // namespace

std::vector<PreviewFinding> findFaults(const TitlePreview& preview) {
    Faults faults(preview);
    faults.find();
    return std::move(faults.found);
}

} // namespace brisk::workbench
