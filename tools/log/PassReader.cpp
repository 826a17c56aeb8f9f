#include "tools/log/PassReader.h"

#include "tools/log/LineValues.h"

namespace brisk::logbook {

namespace {

constexpr std::size_t kMaximumTitles = 1000;
constexpr std::size_t kMaximumLines = 24; // of a title, and of the pass itself

} // namespace

PassReader::PassReader(const LogLine& line) {
    pass.firstLine = line.number;
    pass.lastLine = line.number;
    pass.lines.push_back(toProvingLine(line));
}

PassTitle& PassReader::title() {
    return pass.omittedTitles > 0 || pass.titles.empty() ? omitted : pass.titles.back();
}

bool PassReader::isAt(std::string_view binaryName) const {
    return pass.omittedTitles == 0 && !pass.titles.empty() && pass.titles.back().binaryName == binaryName;
}

void PassReader::beginTitle(const LogLine& line) {
    if (pass.titles.size() == kMaximumTitles) {
        ++pass.omittedTitles;
        omitted = {};
    } else {
        pass.titles.emplace_back().binaryName = behindLast(line.value, "', binary name: '");
    }
}

void PassReader::note(const LogLine& line) {
    auto& lines = pass.titles.empty() ? pass.lines : title().lines;
    if (lines.size() < kMaximumLines) {
        lines.push_back(toProvingLine(line));
    }
}

bool PassReader::feed(const LogLine& line) {
    switch (line.kind) {
    case LineKind::Publisher:
        beginTitle(line);
        break;
    case LineKind::ConfigSkipped:
        title().outcome = TitleOutcome::NotFound;
        break;
    case LineKind::NothingToOptimize:
        title().outcome = TitleOutcome::NothingToDo;
        break;
    case LineKind::Optimized:
        title().titleName = line.value;
        title().outcome = TitleOutcome::Patched;
        break;
    case LineKind::PatchFailed:
        title().outcome = TitleOutcome::Failed;
        break;
    case LineKind::NoOptimalResolution:
        pass.hasNoLowerResolution = true;
        break;
    case LineKind::ToastRefused:
        pass.isToastRefused = true;
        pass.lines.push_back(toProvingLine(line));
        return true;
    case LineKind::BulkPassBegins:
    case LineKind::CurrentDisplay:
    case LineKind::AspectRatio:
    case LineKind::DisplayModes:
    case LineKind::LibraryDisplay:
        pass.lastLine = line.number;
        return true;
    case LineKind::LibraryDisplayFailed:
    case LineKind::NativeResolution:
    case LineKind::LowerResolution:
    case LineKind::NoLowerResolution:
    case LineKind::CheckingPath:
    case LineKind::CheckingRegistry:
    case LineKind::ConfigFound:
    case LineKind::ConfigNotFound:
    case LineKind::RegistryOpenFailed:
    case LineKind::NotOptimal:
    case LineKind::NotLoaded:
    case LineKind::ConditionForbids:
    case LineKind::ConditionMissing:
    case LineKind::SettingNotWritten:
    case LineKind::MarkerSet:
    case LineKind::MarkerFailed:
    case LineKind::RegistryFailed:
        break;
    default:
        return false;
    }
    pass.lastLine = line.number;
    note(line);
    return true;
}

} // namespace brisk::logbook
