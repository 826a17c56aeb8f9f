// Linked into every unit test on the simulated Windows: a test fails when the models saw what must never be done.
#include "host/simulation/Findings.h"

#include <gtest/gtest.h>

namespace {

class FindingsListener final : public ::testing::EmptyTestEventListener {
    void OnTestEnd(const ::testing::TestInfo& /*test*/) override {
        for (const std::string& finding : brisk::host::takeFindings()) {
            ADD_FAILURE() << finding;
        }
    }
};

[[maybe_unused]] const bool isListening = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new FindingsListener);
    return true;
}();

} // namespace
