#include "tools/titles/Rules.h"

#include <array>

namespace brisk::workbench {

std::span<const std::string_view> allRules() {
    static constexpr auto kRules = std::to_array<std::string_view>({
        "json-syntax",
        "json-comment",
        "json-encoding",
        "not-an-array",
        "no-title",
        "element-type",
        "unknown-key",
        "repeated-key",
        "wrong-type",
        "number-fraction",
        "number-range",
        "config-type",
        "missing-key",
        "binary-name",
        "duplicate-binary-name",
        "duplicate-id",
        "duplicate-field",
        "unknown-placeholder",
        "repeated-placeholder",
        "misplaced-placeholder",
        "wildcard-in-name",
        "wildcard-last",
        "second-wildcard",
        "relative-path",
        "folder-location",
        "path-character",
        "own-folder",
        "created-location",
        "registry-root",
        "registry-slash",
        "registry-machine",
        "registry-placeholder",
        "registry-locations",
        "pattern-syntax",
        "pattern-letter-escape",
        "pattern-groups",
        "pattern-lost-text",
        "pattern-no-number",
        "pattern-control-character",
        "pattern-line-anchor",
        "pattern-unanchored",
        "pattern-greedy",
        "pattern-empty",
        "pattern-cost",
        "carriage-return",
        "registry-expression",
        "dollar-in-value",
        "value-not-found",
        "empty-value",
        "number-as-text",
        "unknown-resolution",
        "resolution-beside-text",
        "luma-resolution",
        "template-without-star",
        "template-second-star",
        "created-resolution",
        "created-zero",
        "created-over-text",
        "created-not-found",
        "registry-creation",
        "no-condition",
        "empty-presence",
        "mixed-presence",
        "presence-not-found",
        "shown-markup",
        "shown-ascii",
    });
    return kRules;
}

std::span<const std::string_view> previewRules() {
    static constexpr auto kRules = std::to_array<std::string_view>({
        "never-settles",
        "grows",
        "adjusted-again",
        "not-a-number",
        "several-matches",
        "duplicate-created",
        "match-in-comment",
        "nothing-matches",
        "text-mode-harm",
        "pattern-gives-up",
    });
    return kRules;
}

} // namespace brisk::workbench
