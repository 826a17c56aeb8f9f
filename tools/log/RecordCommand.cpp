#include "tools/log/RecordCommand.h"

#include "tools/console/Files.h"
#include "tools/log/DebugOutput.h"
#include "tools/log/RecordHead.h"
#include "tools/log/StartedProgram.h"

#include <cstdio>
#include <fstream>
#include <iostream>

#include <windows.h>

namespace brisk::logbook {

namespace {

constexpr std::uint32_t kPollMilliseconds = 100;

std::string now() {
    SYSTEMTIME time;
    GetLocalTime(&time);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03d", time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
    return text;
}

class Recorder {
public:
    explicit Recorder(std::ostream& stream) : out(stream) {}

    void write(const DebugOutput::Text& text) {
        // The condition's line has no end, and none is made up between it and the next one.
        std::string_view rest = text.bytes;
        while (!rest.empty()) {
            const std::size_t end = rest.find('\n');
            std::string_view line = rest.substr(0, end);
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
            if (line.ends_with('\r')) {
                line.remove_suffix(1);
            }
            out << now() << ' ' << text.processId << ' ' << line << '\n';
        }
        out.flush();
        if (text.isCut) {
            warn("a text of " + std::to_string(text.bytes.size()) + " bytes may have lost its end");
        }
    }

    void warn(const std::string& words) {
        out << "# warning: " << words << std::endl;
        std::cerr << "brisklog: " << words << '\n';
    }

private:
    std::ostream& out;
};

void warnOfFile(const ServiceFacts& service, Recorder& recorder) {
    if (service.commandLine.find(" -log ") != std::string::npos) {
        recorder.warn("the service writes its lines to the file of -log: only those about its command line come here");
    }
}

void record(DebugOutput& output, std::uint32_t processId, HANDLE process, Recorder& recorder) {
    while (true) {
        // What a process wrote is there when it has ended.
        const bool hasEnded = WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
        const auto text = output.take(hasEnded ? 0 : kPollMilliseconds);
        if (text && text->processId == processId) {
            recorder.write(*text);
        } else if (!text && hasEnded) {
            return;
        }
    }
}

int fail(const std::string& reason) {
    std::cerr << "brisklog: " << reason << '\n';
    return 2;
}

} // namespace

int runRecord(const RecordOptions& options) {
    // What the file holds is given up only once there is something to record.
    std::ofstream file;
    if (!options.output.empty()) {
        file.open(fromUtf8(options.output), std::ios::binary | std::ios::app);
        if (!file) {
            return fail(options.output + ": cannot be written");
        }
    }
    DebugOutput output;
    UniqueHandle process;
    StartedProgram started;
    std::uint32_t processId = 0;
    if (options.command.empty()) {
        const auto running = findServiceProcess();
        if (!running) {
            return fail("no service is running; give the command line of one behind --");
        }
        processId = *running;
        process.reset(OpenProcess(SYNCHRONIZE, FALSE, processId));
        if (!process) {
            return fail("the service's process cannot be opened, error " + std::to_string(GetLastError()));
        }
    } else {
        // Its first lines come at once: the head is made before it runs.
        started = startSuspended(options.command);
        processId = started.processId;
        process = std::move(started.process);
    }
    if (file.is_open()) {
        file.close();
        file.open(fromUtf8(options.output), std::ios::binary);
    }
    std::ostream& out = options.output.empty() ? std::cout : file;
    Recorder recorder(out);
    const ServiceFacts service = readServiceFacts(processId);
    out << makeHead(service);
    if (options.command.empty()) {
        recorder.warn("the service ran already: its lines up to here are not recorded");
    }
    warnOfFile(service, recorder);
    out.flush();
    if (started.thread) {
        ResumeThread(started.thread.get());
    }
    record(output, processId, process.get(), recorder);
    return out ? 0 : fail("the recording could not be written to its end");
}

} // namespace brisk::logbook
