#pragma once

#include <cstdint>

struct EventRegistrationToken {
    std::int64_t value;
};
