#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace WinToastLib {

// The system's template documents; the numbers are Windows'. The document's content is replaced by the toast's own.
enum class ToastTemplateType : std::int32_t {
    ImageAndText01 = 0,
    ImageAndText02 = 1,
    ImageAndText03 = 2,
    ImageAndText04 = 3, // an image and three texts
};

// What a toast is made of. Nothing is escaped: the texts, the path and the labels go into the toast's XML as they are.
struct ToastTemplate {
    ToastTemplateType type = ToastTemplateType::ImageAndText04;
    std::array<std::wstring, 3> texts; // title, subtitle, body
    std::wstring imagePath;            // the logo's source
    std::vector<std::wstring> actions; // button labels
    std::int64_t expiration = 0;       // milliseconds from showing; 0 or less: none, as in all of the service's own
};

} // namespace WinToastLib
