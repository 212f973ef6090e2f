#include "host/output_files.h"

#include <windows.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "host/files.h"
#include "host/host_error.h"
#include "host/win32_error.h"
#include "standins/common/text.h"

namespace host {
namespace {

HostError Unwritable(const char* option, const std::string& path, DWORD error) {
    return HostError(ExitCode::BadInput, std::string("cannot write the file of ") + option + ", '" +
                                             path + "': " + Win32ErrorText(error) +
                                             "; name another file");
}

/// Opens the file for writing and closes it again.
void TouchFile(const char* option, const std::string& path, DWORD disposition) {
    const std::wstring widePath = standins::ToWide(path);
    const HANDLE file =
        CreateFileW(widePath.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    const DWORD error = GetLastError();
    if (file == INVALID_HANDLE_VALUE) {
        throw Unwritable(option, path, error);
    }
    CloseHandle(file);
    if (disposition == OPEN_ALWAYS && error != ERROR_ALREADY_EXISTS) {
        // It was not there, and the run may still turn out to be impossible.
        DeleteFileW(widePath.c_str());
    }
}

}  // namespace

void RefuseSameFiles(const Options& options) {
    const std::vector<std::pair<const char*, std::string>> files{
        {"--plugin", options.plugin}, {"--machine", options.machine}, {"--script", options.script},
        {"--events", options.events}, {"--log", options.log},         {"--page", options.page},
        {"--from", options.from},     {"--from-log", options.fromLog}};
    for (auto first = files.begin(); first != files.end(); ++first) {
        for (auto second = first + 1; second != files.end(); ++second) {
            if (!first->second.empty() && !second->second.empty() &&
                ComparablePath(first->second) == ComparablePath(second->second)) {
                throw HostError(ExitCode::BadInput, std::string(first->first) + " and " +
                                                        second->first + " name the same file, '" +
                                                        first->second + "'; name two");
            }
        }
    }
}

OutputFiles::OutputFiles(const Options& options) : events(options.events), log(options.log) {
    RefuseSameFiles(options);
    if (!events.empty()) {
        TouchFile("--events", events, OPEN_ALWAYS);
    }
    if (!log.empty()) {
        TouchFile("--log", log, OPEN_ALWAYS);
    }
    if (!options.page.empty()) {
        TouchFile("--page", options.page, OPEN_ALWAYS);
    }
}

OutputFiles::~OutputFiles() {
    if (openedFor != nullptr) {
        openedFor->closeEventRecord();
        openedFor->closeLogFile();
    }
}

void OutputFiles::Open(const Suite& suite) {
    openedFor = &suite;
    const auto open = [](const char* option, const std::string& path, auto openInSuite) {
        if (path.empty()) {
            return;
        }
        TouchFile(option, path, CREATE_ALWAYS);
        if (const int error = openInSuite(standins::ToWide(path).c_str()); error != 0) {
            throw Unwritable(option, path, static_cast<DWORD>(error));
        }
    };
    open("--events", events, suite.openEventRecord);
    open("--log", log, suite.openLogFile);
}

}  // namespace host
