#include "tools/titles/PreviewWords.h"

namespace brisk::workbench {

namespace {

constexpr std::size_t kShownText = 200; // bytes

} // namespace

std::string inQuotes(std::string_view text) {
    std::string result = "\"";
    for (const char byte : text.substr(0, kShownText)) {
        const auto code = static_cast<unsigned char>(byte);
        if (byte == '\n') {
            result += "\\n";
        } else if (byte == '\r') {
            result += "\\r";
        } else if (byte == '\t') {
            result += "\\t";
        } else if (code < 0x20 || code == 0x7F) {
            result += {'\\', 'x', "0123456789ABCDEF"[code >> 4U], "0123456789ABCDEF"[code & 0xFU]};
        } else {
            result += byte;
        }
    }
    return result + (text.size() > kShownText ? "...\"" : "\"");
}

std::string withoutControls(std::string_view text) {
    std::string result;
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        result += code < 0x20 && byte != '\n' && byte != '\t' ? '?' : byte;
    }
    return result;
}

std::string headOf(const TitlePreview& preview) {
    return preview.binaryName + (preview.titleName.empty() ? "" : " (" + preview.titleName + ")");
}

std::string describeOutcome(const FieldPreview& field, bool isRegistry) {
    switch (field.outcome) {
    case FieldOutcome::Changes:
        return (field.matches.count > 1 ? "changes in " + std::to_string(field.matches.count) + " places, to "
                                        : "changes to ") +
               inQuotes(field.wanted);
    case FieldOutcome::IsRight:
        return field.matches.count > 1 ? "is right, in " + std::to_string(field.matches.count) + " places" : "is right";
    case FieldOutcome::Created:
        return isRegistry
                   ? "created as " + inQuotes(field.createdText)
                   : "created at line " + std::to_string(field.createdLine) +
                         (field.created.count > 1 ? " and " + std::to_string(field.created.count - 1) +
                                                        (field.created.count == 2 ? " more place" : " more places")
                                                  : "") +
                         " as " + inQuotes(field.createdText);
    case FieldOutcome::Missing:
        return (field.matches.count > 0
                    ? "nothing happens: a setting that is written before hides it from its key, wanted "
                    : "nothing happens, wanted ") +
               inQuotes(field.wanted);
    case FieldOutcome::Ends:
        break;
    }
    return "the service would end";
}

} // namespace brisk::workbench
