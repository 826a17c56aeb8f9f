#include "CallFailures.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "NotificationStandin.h"
#include "Text.h"

namespace brisk::standin {

namespace {

constexpr std::string_view kCalls[] = {"Activate.ToastNotificationManager",
                                       "Activate.ToastNotification",
                                       "Activate.XmlDocument",
                                       "ActivateInstance",
                                       "CreateToastNotifier",
                                       "CreateToastNotifierWithId",
                                       "GetTemplateContent",
                                       "LoadXml",
                                       "CreateToastNotification",
                                       "get_Content",
                                       "put_ExpirationTime",
                                       "get_ExpirationTime",
                                       "add_Activated",
                                       "add_Dismissed",
                                       "add_Failed",
                                       "remove_Activated",
                                       "remove_Dismissed",
                                       "remove_Failed",
                                       "Show",
                                       "Hide",
                                       "get_Setting",
                                       "get_Arguments",
                                       "get_Reason",
                                       "get_ErrorCode",
                                       "QueryInterface.IActivationFactory",
                                       "QueryInterface.IReferenceDateTime",
                                       "QueryInterface.IToastActivatedEventArgs",
                                       "QueryInterface.IToastDismissedEventArgs",
                                       "QueryInterface.IToastFailedEventArgs",
                                       "QueryInterface.IToastNotification",
                                       "QueryInterface.IToastNotificationFactory",
                                       "QueryInterface.IToastNotificationManagerStatics",
                                       "QueryInterface.IToastNotifier",
                                       "QueryInterface.IXmlDocument",
                                       "QueryInterface.IXmlDocumentIO"};

template <class Number>
bool readWhole(std::string_view text, Number& number, int base) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size();
}

} // namespace

CallFailures& CallFailures::instance() {
    // Never destroyed: threads may still call while the process ends.
    static CallFailures& failures = *new CallFailures;
    return failures;
}

CallFailures::CallFailures() {
    try {
        set(toUtf8(environmentVariable(kFailVariable)));
    } catch (const std::runtime_error& error) {
        badEnvironment = toUtf8(kFailVariable) + ": " + error.what();
    }
}

HRESULT CallFailures::next(std::string_view call) {
    std::lock_guard lock(mutex);
    const unsigned count = ++counts.try_emplace(std::string(call)).first->second;
    const auto rule = rules.find(call);
    return rule != rules.end() && count >= rule->second.from ? rule->second.result : S_OK;
}

void CallFailures::set(std::string_view text) {
    std::map<std::string, Rule, std::less<>> parsed;
    while (!text.empty()) {
        const std::string_view rule = text.substr(0, text.find(','));
        text.remove_prefix(std::min(rule.size() + 1, text.size()));
        const size_t equals = std::min(rule.find('='), rule.size());
        const std::string_view what = rule.substr(0, equals);
        const std::string_view call = what.substr(0, what.find(':'));
        unsigned from = 1;
        unsigned long result = 0;
        if (std::ranges::find(kCalls, call) == std::end(kCalls)) {
            throw std::runtime_error("unknown call in '" + std::string(rule) + "'");
        }
        if (call.size() < what.size() && (!readWhole(what.substr(call.size() + 1), from, 10) || from == 0)) {
            throw std::runtime_error("no count from 1 on after ':' in '" + std::string(rule) + "'");
        }
        const std::string_view value = rule.substr(std::min(equals + 1, rule.size()));
        if (!value.starts_with("0x") || !readWhole(value.substr(2), result, 16) ||
            SUCCEEDED(static_cast<HRESULT>(result))) {
            throw std::runtime_error("no failure such as 0x80004005 after '=' in '" + std::string(rule) + "'");
        }
        parsed[std::string(call)] = {from, static_cast<HRESULT>(result)};
    }
    std::lock_guard lock(mutex);
    rules = std::move(parsed);
    counts.clear();
}

} // namespace brisk::standin
