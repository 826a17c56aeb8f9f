#pragma once

#include <string>

namespace brisk::standin {

// Carries out one message of the command grammar in NotificationStandin.h and gives the answer. Any thread but the
// event thread; returns within the message's limit.
std::string carryOut(const std::string& message);

} // namespace brisk::standin
