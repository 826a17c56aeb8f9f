#include "tools/log/PassReader.h"

#include "tools/log/LineValues.h"

#include <utility>

namespace brisk::logbook {

namespace {

constexpr std::size_t kMaximumLines = 24; // of a title, and of the pass itself

} // namespace

PassReader::PassReader(const LogLine& line, std::size_t titles) : limit(titles) {
    pass.firstLine = line.number;
    pass.lastLine = line.number;
    noteOfPass(line);
}

Pass PassReader::finish() {
    endTitle();
    return std::move(pass);
}

void PassReader::pressReadMore(const LogLine& line) {
    pass.isReadMore = true;
    noteOfPass(line);
}

void PassReader::endTitle() {
    if (!title) {
        return;
    }
    ++pass.counts[title->outcome];
    if (pass.titles.size() < limit) {
        pass.titles.push_back(std::move(*title));
    } else {
        ++pass.omittedTitles;
    }
    title.reset();
}

void PassReader::noteOfPass(const LogLine& line) {
    if (pass.lines.size() < kMaximumLines) {
        pass.lines.push_back(toProvingLine(line));
    }
}

void PassReader::note(const LogLine& line) {
    pass.lastLine = line.number;
    if (!title) {
        noteOfPass(line);
    } else if (title->lines.size() < kMaximumLines) {
        title->lines.push_back(toProvingLine(line));
    }
}

bool PassReader::feed(const LogLine& line) {
    const auto come = [this](TitleOutcome outcome) {
        if (title) {
            title->outcome = outcome;
        }
    };
    switch (line.kind) {
    case LineKind::Publisher:
        endTitle();
        title.emplace().binaryName = behindLast(line.value, "', binary name: '");
        break;
    case LineKind::ConfigSkipped:
        come(TitleOutcome::NotFound);
        break;
    case LineKind::ConditionForbids:
    case LineKind::ConditionMissing:
        come(TitleOutcome::Condition);
        break;
    case LineKind::NotLoaded:
        come(TitleOutcome::NotLoaded);
        break;
    case LineKind::NothingToOptimize:
        // Unless a line before told why.
        if (title && title->outcome == TitleOutcome::CutOff) {
            come(TitleOutcome::NothingToDo);
        }
        break;
    case LineKind::Optimized:
        come(TitleOutcome::Patched);
        if (title) {
            title->titleName = line.value;
        }
        break;
    case LineKind::PatchFailed:
        come(TitleOutcome::Failed);
        break;
    case LineKind::NoOptimalResolution:
        pass.hasNoLowerResolution = true;
        break;
    case LineKind::ToastRefused:
        pass.isToastRefused = true;
        noteOfPass(line);
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
    case LineKind::SettingNotWritten:
    case LineKind::MarkerSet:
    case LineKind::MarkerFailed:
    case LineKind::RegistryFailed:
        break;
    default:
        return false;
    }
    note(line);
    return true;
}

} // namespace brisk::logbook
