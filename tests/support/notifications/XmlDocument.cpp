#include "XmlDocument.h"

#include "Calls.h"
#include "Text.h"

namespace brisk::standin {

HRESULT XmlDocument::LoadXml(HSTRING xml) {
    const std::wstring text = fromHString(xml);
    return answer("LoadXml", escaped(text), [&] { return load(text); });
}

HRESULT XmlDocument::load(const std::wstring& xml) {
    auto parsed = std::make_shared<XmlElement>();
    const HRESULT result = parseXml(xml, *parsed);
    if (SUCCEEDED(result)) {
        std::lock_guard lock(mutex);
        content = std::move(parsed);
    }
    return result;
}

std::shared_ptr<const XmlElement> XmlDocument::root() {
    std::lock_guard lock(mutex);
    return content;
}

HRESULT XmlDocumentFactory::ActivateInstance(IInspectable** instance) {
    return answer("ActivateInstance", toUtf8(abi::kXmlDocumentClass), [&] {
        if (!instance) {
            return E_POINTER;
        }
        *instance = static_cast<abi::IXmlDocument*>(new XmlDocument);
        return S_OK;
    });
}

} // namespace brisk::standin
