#include "tools/log/LineTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <span>
#include <vector>

namespace brisk::logbook {

namespace {

// A line's words before and behind what varies. Words that are the whole line have no value.
struct Words {
    LineKind kind;
    std::string_view front;
    bool isWhole = true;
    std::string_view back = {};
};

using enum LineKind;

constexpr std::array kWords{
    Words{FirstParameter, "looking for command line parameter -nw (", false},
    Words{Parameter, "looking for command line parameter ", false},
    Words{ParameterSet, "set NumberOf", false},
    Words{ParameterSet, "set fpsOverride to ", false},
    Words{ParameterSet, "set logToFile to ", false},
    Words{RunningAlready, "running already. Exiting."},
    Words{ModuleFailed, "couldn't get module name. Error ", false},
    Words{ModuleFailed, "couldn't find delimiter in module name."},
    Words{DatabaseNotOpened, "unable to open title database."},
    Words{DatabaseNoArray, "unable to parse title database."},
    Words{UnknownAdapter, "unknown adaper type '", false, "'."},
    Words{TitlesProcessed, "titles DB processed."},
    Words{RegistryGranted, "access to the Windows Registry granted."},
    Words{RegistryNotGranted, "access to the Windows Registry not granted."},
    Words{GraphicsNote, "initializing GfxInfoKestrel."},
    Words{GraphicsNote, "initializing Kestrel."},
    Words{LibraryFailed, "failed to initialize Kestrel."},
    Words{GraphicsNote, "Kestrel initialized."},
    Words{GraphicsNote, "get Kestrel performance monitoring services."},
    Words{LibraryFailed, "failed to get Kestrel performance monitoring services."},
    Words{LibraryAcquired, "Kestrel performance monitoring services acquired."},
    Words{GenericGraphics, "initializing GfxInfoGen."},
    Words{NoGraphics, "failed to create GfxInfo."},
    Words{Finished, "finished"},
    Words{Error, "[json.exception.", false},
    Words{Error, "invalid stoi argument"},
    Words{Error, "stoi argument out of range"},
    Words{Error, "invalid vector subscript"},
    Words{Error, "RegisterClass failed"},
    Words{Error, "CreateWindowEx failed"},
    Words{Error, "ToastManager: Error, ", false},
    Words{Error, "std::bad_alloc"},
    Words{Error, "bad allocation"},
    Words{Error, "filesystem error: ", false},
    Words{AppStarted, "onAppStarted, p1 = ", false},
    Words{SecondGame, "stop tracking, doesn't track more than one app"},
    Words{UnknownId, "GameID ", false, " is not supported. Skip."},
    Words{Waiting, "waiting for activation, GameID ", false},
    Words{SwitchTo, "switch to IDLE"},
    Words{SwitchTo, "switch to WAITING_APP"},
    Words{SwitchTo, "switch to APP_WARMING"},
    Words{SwitchTo, "switch to TRACKING"},
    Words{SwitchTo, "switch to NOT_TRACKING"},
    Words{Tick, "shouldStartTracking"},
    Words{Window, "HWND = ", false},
    Words{WindowProcess, "PID = ", false},
    Words{OtherProcess, "expected PID ", false},
    Words{NoFileName, "couldn't get file name by PID"},
    Words{NoFileProperties, "couldn't get file properties for ", false},
    Words{Publisher, "publisher: '", false, "'."},
    Words{CheckingPath, "checking path '", false, "'."},
    Words{CheckingRegistry, "checking registry path '", false, "'."},
    Words{ConfigFound, "config found."},
    Words{ConfigNotFound, "config not found."},
    Words{RegistryOpenFailed, "RegOpenKeyEx failed. Error ", false},
    Words{ConfigSkipped, "config for ", false, " was not found. Skip."},
    Words{OpenProcessFailed, "OpenProcess failed. Can't track app."},
    Words{ExitCodeFailed, "failed to get tracked process exit code."},
    Words{ProcessClosed, "tracked process is closed. Skip tracking, waiting for BRISK_APP_FINISHED message."},
    Words{NotInForeground, "foreground window doesn't belong to tracked process."},
    Words{Sample, "FPS = ", false},
    Words{SampleFailed, "failed to get current FPS from Kestrel."},
    Words{SampleFailed, "failed to get FPS data from Kestrel."},
    Words{AppFinished, "onAppFinished, p1 = ", false},
    Words{FinishedInIdle, "got BRISK_APP_FINISHED message in IDLE state."},
    Words{Average, "average fps = ", false},
    Words{CurrentDisplay, "get current display info."},
    Words{LibraryDisplay, "Kestrel primary display found."},
    Words{LibraryDisplay, "Kestrel native display features fetched."},
    Words{LibraryDisplayFailed, "failed to get Kestrel system services."},
    Words{LibraryDisplayFailed, "failed to get Kestrel desktop services."},
    Words{LibraryDisplayFailed, "failed to get Kestrel desktop list."},
    Words{LibraryDisplayFailed, "failed to get Kestrel desktop."},
    Words{LibraryDisplayFailed, "failed to get Kestrel top left point of a desktop."},
    Words{LibraryDisplayFailed, "failed to get Kestrel display list."},
    Words{LibraryDisplayFailed, "SPANVIEW mode detected on a desktop."},
    Words{LibraryDisplayFailed, "Kestrel detected more than one display on a desktop."},
    Words{LibraryDisplayFailed, "Kestrel failed to get primary display."},
    Words{LibraryDisplayFailed, "Kestrel failed to get native resolution of a primary display."},
    Words{LibraryDisplayFailed, "Kestrel failed to get refresh rate of a primary display."},
    Words{NativeResolution, "native resolution: ", false},
    Words{AspectRatio, "aspect ratio: ", false},
    Words{DisplayModes, "get available display info modes."},
    Words{DisplayModes, "found ", false, " display modes."},
    Words{LowerResolution, "optimal resolution: ", false},
    Words{NoLowerResolution, "unable to find optimal resolution."},
    Words{NotNative, "current display resolution is different to native display resolution. Skip."},
    Words{NoOptimalResolution, "couldn't get optimal display resolution. Skip."},
    Words{TooFewSamples, "insufficient data collected (", false, " intervals)."},
    Words{Ratio, "FPS ratio to optimal is ", false},
    Words{ShouldShowToast, "shouldShowToast"},
    Words{NotOptimal, "game setting '", false, "'."},
    Words{NotLoaded, "unable to load configuration."},
    Words{ConditionForbids, "current configuration with key '", false, "' doesn't meet requirements."},
    Words{ConditionMissing, "unable to find configuration field with key '", false, "'. Skip patching."},
    Words{Needed, "titleManager.isTitleNeedToBeOptimized = ", false},
    Words{OffersAllowed, "areToastsAllowed = ", false},
    Words{Refusals, "getNumberOfToastsShown = ", false},
    Words{ToastRefused, "ToastManager: Can't show notification"},
    Words{PressConfigure, "Toast : Configure Settings"},
    Words{PressNotNow, "Toast : Not now"},
    Words{PressDontAskAgain, "Toast : Don't ask again"},
    Words{PressReadMore, "Toast : Read more"},
    Words{SettingNotWritten, "setValue failed for '", false},
    Words{PatchFailed, "failed to patch ", false},
    Words{MarkerSet, "patch marker set for ", false},
    Words{MarkerFailed, "failed to set patch marker for ", false},
    Words{RefusalCounted, "increment toasts counter for ", false},
    Words{RefusalNotCounted, "failed to increment toasts counter for ", false},
    Words{OffersDisabled, "toasts disabled"},
    Words{OffersNotDisabled, "failed to disable toasts"},
    Words{BulkPass, "onMassivePatching"},
    Words{BulkPassBegins, "doMassivePatching"},
    Words{Reset, "onResetPromptCounters"},
    Words{ResetNote, "resetToastsAllowed couldn't delete key"},
    Words{ResetNote, "resetToastsShown couldn't delete tree"},
    Words{TitleInformation, "receiveTitleInfo"},
    Words{TitleInformation, "got exception while processing titles info"},
};

constexpr std::string_view kStateFront = "switch to ";

// The words by their first byte, in the table's order: it puts the longer of two fronts first.
class Index {
public:
    Index() {
        for (const Words& words : kWords) {
            lists[static_cast<unsigned char>(words.front.front())].push_back(words);
        }
    }

    std::span<const Words> find(std::string_view message) const {
        return message.empty() ? std::span<const Words>() : lists[static_cast<unsigned char>(message.front())];
    }

private:
    std::array<std::vector<Words>, 256> lists;
};

const Index& wordsIndex() {
    static const Index index;
    return index;
}

std::string_view between(std::string_view message, const Words& words) {
    return message.substr(words.front.size(), message.size() - words.front.size() - words.back.size());
}

std::string_view valueOf(LineKind kind, std::string_view message, std::string_view value) {
    return kind == ParameterSet ? message.substr(4) : kind == Error ? message : value;
}

// Of a line that ends with its value. A yes or no has one digit, a count does not begin with 0, and an error is one
// however much is left of it.
bool isOpen(LineKind kind, std::string_view value) {
    const bool isDigit =
        ((kind == Needed || kind == OffersAllowed) && !value.empty()) || (kind == Refusals && value == "0");
    return !isDigit && kind != Error;
}

// Lines that begin with a name.
Classified classifyByEnd(std::string_view message) {
    constexpr std::string_view kNothing = " doesn't need optimization. Skip.";
    constexpr std::string_view kOptimized = "' optimized.";
    if (message.ends_with(kNothing)) {
        return {NothingToOptimize, message.substr(0, message.size() - kNothing.size())};
    }
    if (message.ends_with(kOptimized) && message.starts_with('\'') && message.size() > kOptimized.size()) {
        return {Optimized, message.substr(1, message.size() - kOptimized.size() - 1)};
    }
    if (message.ends_with("regular expression") || message.starts_with("regex_error")) {
        return {Error, message};
    }
    // "OPERATION : CALL failed. Error N."
    if (message.ends_with('.') && message.substr(0, 46).find(" : Reg") != std::string_view::npos &&
        message.substr(0, 95).find(" failed. Error ") != std::string_view::npos) {
        return {RegistryFailed, message};
    }
    return {};
}

} // namespace

Classified classify(std::string_view message) {
    for (const Words& words : wordsIndex().find(message)) {
        if (!message.starts_with(words.front)) {
            // A name at the end may be empty, and the blank in front of it is gone then.
            if (!words.isWhole && words.front.size() == message.size() + 1 && words.front.ends_with(' ') &&
                words.front.starts_with(message)) {
                return {words.kind, {}, true};
            }
            continue;
        }
        if (words.isWhole) {
            if (message.size() == words.front.size()) {
                return {words.kind, words.kind == SwitchTo ? message.substr(kStateFront.size()) : message};
            }
        } else if (message.size() >= words.front.size() + words.back.size() && message.ends_with(words.back)) {
            const std::string_view value = between(message, words);
            return {words.kind, valueOf(words.kind, message, value), words.back.empty() && isOpen(words.kind, value)};
        }
    }
    return classifyByEnd(message);
}

bool mayBeCut(std::string_view message) {
    return message.empty() || std::any_of(kWords.begin(), kWords.end(), [message](const Words& words) {
               return words.front.starts_with(message) || (!words.isWhole && message.starts_with(words.front));
           });
}

bool isOfFixedWords(std::string_view word) {
    const auto isLetter = [](char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); };
    const auto isSame = [](char one, char other) {
        return (one >= 'A' && one <= 'Z' ? static_cast<char>(one - 'A' + 'a') : one) == other;
    };
    const auto holds = [&](std::string_view words) {
        for (auto begin = words.begin(); begin != words.end(); ++begin) {
            begin = std::search(begin, words.end(), word.begin(), word.end(), isSame);
            if (begin == words.end()) {
                return false;
            }
            const auto end = begin + static_cast<std::ptrdiff_t>(word.size());
            if ((begin == words.begin() || !isLetter(*std::prev(begin))) && (end == words.end() || !isLetter(*end))) {
                return true;
            }
        }
        return false;
    };
    return holds("Brisk : started") || holds("optimized") ||
           std::any_of(kWords.begin(), kWords.end(),
                       [&holds](const Words& words) { return holds(words.front) || holds(words.back); });
}

} // namespace brisk::logbook
