#include "host/model/Landmarks.h"

namespace brisk::model {

std::vector<std::string>& missingLandmarks() {
    static std::vector<std::string> missing{
        "unable to open title database.",
        "access to the Windows Registry not granted.",
        "failed to create GfxInfo.",
        "doesn't track more than one app",
        "OpenProcess failed. Can't track app.",
        "switch to NOT_TRACKING",
        "failed to get tracked process exit code.",
        "tracked process is closed.",
        "foreground window doesn't belong to tracked process.",
        "FPS = 15\n",
        "FPS = 300\n",
        "FPS = 301\n",
        "native display resolution. Skip.",
        "couldn't get optimal display resolution.",
        "insufficient data collected",
        "FPS ratio to optimal is 0.85\n",
        "areToastsAllowed = 0",
        "getNumberOfToastsShown = 2\n",
        "getNumberOfToastsShown = 3\n",
        "config for Game",
        "directory_iterator::operator++",
        "directory_iterator::directory_iterator",
        "filesystem error: exists",
        "filesystem error: status",
        "invalid stoi argument",
        "stoi argument out of range",
        "unable to load configuration.",
        "doesn't meet requirements.Brisk : ",
        "Skip patching.",
        "doesn't need optimization.",
        "setValue failed for ",
        "Error 1018.",
        "failed to patch ",
        "failed to set patch marker for ",
        "patch marker set for ",
        "Toast : Configure Settings",
        "increment toasts counter for ",
        "failed to increment toasts counter for ",
        "toasts disabled",
        "failed to disable toasts",
        "Toast : Read more",
        "Can't show notification",
        "resetToastsAllowed : RegDeleteValue failed.",
        "resetToastsShown : RegDeleteTree failed.",
        "got exception while processing titles info",
    };
    return missing;
}

void lookForLandmarks(const std::string& line) {
    std::erase_if(missingLandmarks(),
                  [&](const std::string& landmark) { return line.find(landmark) != std::string::npos; });
}

} // namespace brisk::model
