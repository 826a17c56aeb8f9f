#pragma once

#include "tools/titles/Displays.h"
#include "tools/titles/Finding.h"
#include "tools/titles/PreviewAdapter.h"
#include "tools/titles/RegistryPreviewAdapter.h"
#include "tools/titles/ServiceEnd.h"
#include "tools/titles/TextPreviewAdapter.h"
#include "tools/titles/TextTraits.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brisk::workbench {

// What the service makes of a title once.
enum class Verdict {
    Adjusted,
    Untouched, // all settings are right
    Condition, // a condition does not hold
    NotFound,
    NotReadable, // found, but no location can be opened
    NotWritable,
    NoResolution, // no offer on a display without a lower resolution
    Ends,         // the service ends with an error
};

// "adjusted", "untouched", "condition", "not-found", ...
const char* nameOf(Verdict verdict);

// What becomes of one field.
enum class FieldOutcome {
    Changes,
    IsRight,
    Created,
    Missing, // nothing happens
    Ends,
};

struct FieldPreview {
    std::string key;
    ConfigField field;
    KeyMatches matches; // in the text as it is read
    bool isMissing = false;
    std::string current;
    std::string wanted;
    bool differs = false;       // a reason for an offer
    bool differsAtLast = false; // still, after the last pass; known where the title does not settle
    FieldOutcome outcome = FieldOutcome::Missing;
    KeyMatches created;      // where create_key stands, in the text as the fields before left it
    std::string createdText; // what is put there
    std::size_t createdLine = 0;
    std::optional<ServiceEnd> end;
};

struct ConditionPreview {
    PatchCondition condition;
    KeyMatches matches;
    std::string current;
    bool holds = false;
    std::string log; // what the service says to it
    std::optional<ServiceEnd> end;
};

struct PassPreview {
    Verdict verdict = Verdict::Untouched;
    std::string log;
    std::string diff;     // LineDiff.h
    bool changes = false; // what is read next time
    std::size_t size = 0; // of what is read next time
};

struct TitlePreview {
    std::string binaryName;
    std::string titleName;
    bool isRegistry = false;
    std::vector<PreviewFile> files; // one a location, without bytes
    bool isFound = false;
    std::string readLocation;
    std::string writtenLocation;
    std::string before; // the bytes that are read; a registry key as text
    std::string after;  // the bytes that the first pass writes; the same where it writes none
    std::string text;   // as it is read; places are offsets in it
    std::string textAfterFields;
    std::optional<TextTraits> traits;
    std::vector<ConditionPreview> conditions;
    std::vector<FieldPreview> fields;     // in the order in which the service takes them
    std::vector<PassPreview> passes;      // until nothing changes
    std::vector<std::string> differAgain; // keys of fields that differ after the first pass; known where one is created
    bool settles = true;
};

// What the service would do with a title whose settings are found through `adapter`, in `appDirectory` or elsewhere.
// Ends always, with every error in the preview; only std::bad_alloc is thrown.
TitlePreview previewText(TextPreviewAdapter& adapter, const std::string& appDirectory, const Display& display);

// The same for a title in the registry.
TitlePreview previewRegistry(RegistryPreviewAdapter& adapter, const Display& display);

} // namespace brisk::workbench
