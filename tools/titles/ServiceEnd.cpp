#include "tools/titles/ServiceEnd.h"

#include "pattern/PatternError.h"

#include <new>
#include <stdexcept>

namespace brisk::workbench {

ServiceEnd describeException() {
    try {
        throw;
    } catch (const PatternError& error) {
        return {ServiceEnd::Reason::BadPattern, error.what()};
    } catch (const std::regex_error& error) {
        return {ServiceEnd::Reason::GaveUp, error.what()};
    } catch (const std::invalid_argument& error) {
        return {ServiceEnd::Reason::NoNumber, error.what()};
    } catch (const std::out_of_range& error) {
        return {ServiceEnd::Reason::NoNumber, error.what()};
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        return {ServiceEnd::Reason::Other, error.what()};
    }
}

} // namespace brisk::workbench
