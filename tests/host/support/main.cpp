// The unit tests' main on the simulated Windows: leaves out what needs the real one, also where GTEST_FILTER or
// --gtest_filter chooses among the rest.
#include <gmock/gmock.h>

extern const char kLeftOut[]; // a filter's patterns; the build writes them

int main(int argc, char** argv) {
    ::testing::InitGoogleMock(&argc, argv);
    std::string filter = ::testing::GTEST_FLAG(filter);
    filter += filter.find('-') == std::string::npos ? '-' : ':';
    ::testing::GTEST_FLAG(filter) = filter + kLeftOut;
    return RUN_ALL_TESTS();
}
