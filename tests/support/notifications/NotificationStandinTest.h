#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "NotificationClient.h"
#include "NotificationStandinControl.h"

namespace brisk::standin {

inline constexpr wchar_t kTwoButtons[] =
    L"\n<toast template=\"ToastGeneric\"><visual><binding template=\"ToastGeneric\"><text>Title</text>"
    L"<text>Subtitle</text></binding></visual><actions><action content=\"Yes\" arguments=\"0\"/>"
    L"<action content=\"No\" arguments=\"1\"/></actions></toast>";

// The error text of an operation that is to fail.
template <class Operation>
std::string errorOf(Operation operation) {
    try {
        operation();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

// The stand-in registered and used through RoGetActivationFactory, with a record of its own for each test.
class NotificationStandinTest : public testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();
    void SetUp() override;
    void TearDown() override;

    ComReference<abi::IXmlDocument> createDocument(const std::wstring& xml) const;
    ComReference<abi::IToastNotification> createNotification(const std::wstring& xml = kTwoButtons) const;
    ComReference<abi::IToastNotifier> createNotifier() const;
    // A notification that was just shown.
    ComReference<abi::IToastNotification> showToast(const std::wstring& xml = kTwoButtons) const;

    const NotificationStandinControl control = NotificationStandinControl::inProcess();
    const std::filesystem::path record = std::filesystem::temp_directory_path() / L"notification-record.txt";
};

} // namespace brisk::standin
