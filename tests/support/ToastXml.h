// Toasts' documents as records give them: a line end is "\n" in two characters.
#pragma once

#include <string>
#include <vector>

namespace brisk::testing {

// The body is XML: one text, or groups of pairs.
inline std::string toastDocument(const std::string& title, const std::string& subtitle, const std::string& body,
                                 const std::vector<std::string>& buttons) {
    std::string xml = R"(\n<toast template="ToastGeneric" duration="long" scenario="Default">)"
                      R"(<visual><binding template="ToastGeneric">)"
                      R"(<image placement="appLogoOverride" hint-crop="circle" src=""/>)";
    xml += "<text>" + title + "</text><text>" + subtitle + "</text>\\n" + body + "</binding></visual><actions>";
    for (std::size_t k = 0; k < buttons.size(); ++k) {
        xml += "<action content=\"" + buttons[k] + "\" arguments=\"" + std::to_string(k) + "\"/>";
    }
    return xml + "</actions></toast>";
}

// A toast without a body and buttons.
inline std::string plainToast(const std::string& title, const std::string& subtitle) {
    return toastDocument(title, subtitle, "<text></text>", {});
}

} // namespace brisk::testing
