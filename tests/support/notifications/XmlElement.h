#pragma once

#include <map>
#include <string>
#include <vector>

#include <windows.h>

namespace brisk::standin {

// An element of a parsed document.
struct XmlElement {
    std::wstring name;
    std::map<std::wstring, std::wstring> attributes;
    // Its own character data, in one piece.
    std::wstring text;
    std::vector<XmlElement> children;

    // The first child of that name, or null.
    const XmlElement* child(const wchar_t* childName) const;
    // An attribute's value, or empty.
    std::wstring attribute(const wchar_t* attributeName) const;
};

// Parses a whole document. WC_E_SYNTAX for text that is not well-formed XML or has a document type (which the
// notification service prohibits); otherwise what creating the parser failed with. COM must be initialised.
HRESULT parseXml(const std::wstring& text, XmlElement& root);

} // namespace brisk::standin
