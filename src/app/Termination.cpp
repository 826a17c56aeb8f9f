#include <cstdlib>

// GCC's library ends a program whose exception nobody catches with words for standard error, which nobody reads of a
// service, and brings a reader of mangled names along: 50 KB. This takes its place.
namespace __gnu_cxx { // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the library's own name

// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): as above
[[noreturn]] void __verbose_terminate_handler() {
    std::abort();
}

} // namespace __gnu_cxx
