#include "XmlElement.h"

#include <memory>

#include <msxml2.h>
#include <xmllite.h>

#include "base/WindowsHandles.h"

namespace brisk::standin {

namespace {

constexpr CLSID kDomDocument60 = {0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};

// xmllite.h has it as an enumerator that is too large for an HRESULT.
constexpr HRESULT kMalformed = static_cast<HRESULT>(WC_E_SYNTAX);

struct SysFreeStringDeleter {
    void operator()(BSTR text) const { SysFreeString(text); }
};
using UniqueBstr = std::unique_ptr<OLECHAR, SysFreeStringDeleter>;

template <class Get>
std::wstring textOf(Get get) {
    BSTR text = nullptr;
    get(&text);
    const UniqueBstr owner(text);
    return {text, SysStringLen(text)};
}

std::wstring valueOf(IXMLDOMNode* node) {
    VARIANT value;
    VariantInit(&value);
    node->get_nodeValue(&value);
    std::wstring text = value.vt == VT_BSTR ? std::wstring(value.bstrVal, SysStringLen(value.bstrVal)) : L"";
    VariantClear(&value);
    return text;
}

void readElement(IXMLDOMNode* node, XmlElement& element) {
    element.name = textOf([&](BSTR* text) { return node->get_nodeName(text); });
    ComReference<IXMLDOMNamedNodeMap> attributes;
    node->get_attributes(attributes.receive());
    for (;;) {
        ComReference<IXMLDOMNode> attribute;
        if (!attributes || attributes->nextNode(attribute.receive()) != S_OK) {
            break;
        }
        element.attributes[textOf([&](BSTR* text) { return attribute->get_nodeName(text); })] =
            valueOf(attribute.get());
    }
    ComReference<IXMLDOMNode> child;
    node->get_firstChild(child.receive());
    while (child) {
        DOMNodeType type = NODE_INVALID;
        child->get_nodeType(&type);
        if (type == NODE_TEXT || type == NODE_CDATA_SECTION) {
            element.text += valueOf(child.get());
        } else if (type == NODE_ELEMENT) {
            readElement(child.get(), element.children.emplace_back());
        }
        ComReference<IXMLDOMNode> next;
        child->get_nextSibling(next.receive());
        child = std::move(next);
    }
}

} // namespace

const XmlElement* XmlElement::child(const wchar_t* childName) const {
    for (const XmlElement& element : children) {
        if (element.name == childName) {
            return &element;
        }
    }
    return nullptr;
}

std::wstring XmlElement::attribute(const wchar_t* attributeName) const {
    const auto found = attributes.find(attributeName);
    return found == attributes.end() ? std::wstring() : found->second;
}

HRESULT parseXml(const std::wstring& text, XmlElement& root) {
    ComReference<IXMLDOMDocument> document;
    const HRESULT created =
        CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument, document.receiveVoid());
    if (FAILED(created)) {
        return created;
    }
    document->put_async(VARIANT_FALSE);
    document->put_preserveWhiteSpace(VARIANT_TRUE);
    const UniqueBstr source(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ComReference<IXMLDOMDocumentType> documentType;
    ComReference<IXMLDOMElement> element;
    if (document->loadXML(source.get(), &loaded) != S_OK || loaded != VARIANT_TRUE ||
        document->get_doctype(documentType.receive()) == S_OK ||
        document->get_documentElement(element.receive()) != S_OK) {
        return kMalformed;
    }
    XmlElement parsed;
    readElement(element.get(), parsed);
    root = std::move(parsed);
    return S_OK;
}

} // namespace brisk::standin
