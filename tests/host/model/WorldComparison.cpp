// What the world compares after a step.
#include "host/model/World.h"

#include "host/model/Landmarks.h"
#include "host/simulation/Desktop.h"
#include "host/simulation/Findings.h"
#include "host/simulation/Handles.h"
#include "host/simulation/Processes.h"
#include "host/simulation/System.h"
#include "host/simulation/Toasts.h"
#include "tracking/Tracking.h"

#include <algorithm>
#include <sstream>

namespace brisk::model {

namespace {

bool isAsExpected(const std::string& actual, const std::string& expected) {
    const std::size_t rest = expected.find(kAnyTextFollows);
    return rest == std::string::npos ? actual == expected
                                     : actual.starts_with(expected.substr(0, rest)) && actual.ends_with('\n');
}

// A division of zero by zero has a sign that nobody means.
std::string withoutSignOfNan(std::string text) {
    if (const std::size_t found = text.find("-nan"); found != std::string::npos) {
        text.erase(found, 1);
    }
    return text;
}

std::string join(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += "  " + line;
    }
    return text;
}

} // namespace

void World::check(bool holds, const std::string& what) {
    if (!holds && !difference) {
        difference = Difference{current(), what};
    }
}

template <class Value>
void World::checkEqual(const char* what, const Value& actual, const Value& expected) {
    if (actual != expected && !difference) {
        std::ostringstream text;
        text << what << ": expected " << expected << ", actual " << actual;
        difference = Difference{current(), text.str()};
    }
}

template void World::checkEqual(const char*, const bool&, const bool&);
template void World::checkEqual(const char*, const int&, const int&);

void World::compare() {
    compareLines();
    compareTracking();
    compareToasts();
    compareHandles(1);
    compareDefaultHandling();
    const std::string registry = machine.compareRegistry();
    check(registry.empty(), registry);
    const std::string files = machine.compareFiles();
    check(files.empty(), files);
    for (const std::string& finding : host::takeFindings()) {
        check(false, finding);
    }
    check(!failure, "the service should have ended by: " + (failure ? failure->text : std::string()));
}

void World::compareLines() {
    auto& actual = host::simulatedSystem().debuggerOutput;
    const bool isSame =
        std::equal(actual.begin(), actual.end(), model->lines.begin(), model->lines.end(),
                   [](const std::string& left, const std::string& right) {
                       return left == right || isAsExpected(withoutSignOfNan(left), withoutSignOfNan(right));
                   });
    for (const std::string& line : actual) {
        lookForLandmarks(line);
    }
    if (!isSame) {
        check(false, "log\n expected\n" + join(model->lines) + " actual\n" + join(actual));
    }
    actual.clear();
    model->lines.clear();
}

void World::compareTracking() {
    const TrackingContext& actual = trackingContext;
    checkEqual("state", static_cast<unsigned>(trackingState), model->state);
    checkEqual("gameId", actual.gameId, model->gameId);
    checkEqual("processId", actual.processId, model->processId);
    checkEqual("averageFps", actual.averageFps, model->averageFps);
    checkEqual("sampleCount", actual.sampleCount, model->sampleCount);
    checkEqual("intervalCounter", actual.intervalCounter, model->intervalCounter);
    checkEqual("fpsSum", actual.fpsSum, model->fpsSum);
    checkEqual("publisher", actual.publisher, model->publisher);
    checkEqual("executableName", actual.executableName, model->executableName);
    checkEqual("process handle", actual.processHandle != nullptr, model->processHandle != ServiceModel::Handle::None);
    const auto& timers = host::desktop().timers;
    const bool isTimer =
        timers.size() == 1 && timers.begin()->first.second == kTrackingTimerId && timers.begin()->second == 1000;
    check(model->timerRuns ? isTimer : timers.empty(),
          model->timerRuns ? "the timer does not run as it should" : "a timer runs");
}

void World::compareToasts() {
    const auto& actual = host::notificationArea().all;
    checkEqual("toasts shown so far", actual.size(), model->toasts.size());
    for (std::size_t i = 0; i < actual.size() && !difference; ++i) {
        const ShownToast& expected = model->toasts[i];
        const host::Toast& toast = *actual[i];
        if (toast.document.size() != expected.document.size() ||
            !std::equal(toast.document.begin(), toast.document.end(), expected.document.begin(),
                        [](wchar_t wide, char narrow) { return wide == static_cast<wchar_t>(narrow); })) {
            check(false, "toast: expected\n" + expected.document + "\n actual\n" +
                             std::string(toast.document.begin(), toast.document.end()));
        }
        check(toast.isShown == expected.isShown, expected.isShown ? "a toast is hidden" : "a toast is not hidden");
        check(toast.isInTable == expected.isInTable,
              expected.isInTable ? "a toast is gone from the table" : "a toast is left in the table");
    }
}

// The process's handle that the context drops stays open, and so does every key that a registry title found.
void World::compareHandles(unsigned openEvents) {
    using host::HandleKind;
    const bool isOpen = model->processHandle == ServiceModel::Handle::Open;
    checkEqual("open process handles", host::handles().count(HandleKind::Process),
               model->droppedHandles + (isOpen ? 1 : 0));
    checkEqual("open registry keys", host::handles().count(HandleKind::RegistryKey), model->openAdapterKeys);
    checkEqual("open searches", host::handles().count(HandleKind::Search), 0u);
    checkEqual("open files", host::handles().count(HandleKind::File), 0u);
    checkEqual("open events", host::handles().count(HandleKind::Event), openEvents);
    checkEqual("exit codes asked of a closed handle", host::processes().lateExitCodes, model->lateExitCodes);
}

// Every message is handed on with its parameters, and that answer is the sender's.
void World::compareDefaultHandling() {
    auto& handled = host::desktop().defaultHandled;
    if (posted) {
        const bool isHandedOn = handled.size() == 1 && handled[0].hwnd == posted->hwnd &&
                                handled[0].message == posted->message && handled[0].wParam == posted->wParam &&
                                handled[0].lParam == posted->lParam;
        check(isHandedOn || posted->message == WM_CREATE, "the message was not handed on to the default procedure");
        if (posted->message != WM_CREATE) {
            checkEqual("the window procedure's answer", host::desktop().lastDispatchResult,
                       host::desktop().defaultResult);
        }
    } else {
        check(handled.empty(), "a message that nobody posted");
    }
    handled.clear();
    posted.reset();
}

} // namespace brisk::model
