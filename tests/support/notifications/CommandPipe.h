#pragma once

namespace brisk::standin {

// Opens the command pipe, once for the process; from then on commands are answered on threads of the stand-in's own.
void openCommandPipe();

} // namespace brisk::standin
