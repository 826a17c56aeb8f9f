#pragma once

#include <memory>
#include <mutex>

#include "ComObject.h"
#include "XmlElement.h"

namespace brisk::standin {

// How the stand-in reads what one of its own documents holds.
struct IDocumentContent : IInspectable {
    static constexpr IID kIid{0x2ce39d60, 0x4d0f, 0x4c0b, {0x9a, 0x55, 0x1f, 0x6e, 0x0b, 0x87, 0x35, 0x11}};
    // The root element; null before a document was loaded.
    virtual std::shared_ptr<const XmlElement> root() = 0;
};

// Windows.Data.Xml.Dom.XmlDocument. A refused text leaves the old content.
class XmlDocument : public ComObject<abi::IXmlDocument, abi::IXmlDocumentIO, IDocumentContent> {
public:
    XmlDocument() : ComObject(abi::kXmlDocumentClass) {}

    HRESULT STDMETHODCALLTYPE LoadXml(HSTRING xml) override;
    std::shared_ptr<const XmlElement> root() override;
    HRESULT load(const std::wstring& xml);

private:
    std::mutex mutex;
    std::shared_ptr<const XmlElement> content;
};

class XmlDocumentFactory : public ComObject<IActivationFactory> {
public:
    XmlDocumentFactory() : ComObject(abi::kXmlDocumentClass) {}

    HRESULT STDMETHODCALLTYPE ActivateInstance(IInspectable** instance) override;
};

} // namespace brisk::standin
