#include "platform/log_kit.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <string>

#include "common/text.h"
#include "standins/common/callback_slot.h"
#include "standins/common/state_lock.h"
#include "standins/common/text_output.h"
#include "standins/log_kit/log_kit_control.h"

namespace {

using standins::ExclusiveLock;

constexpr int kConsoleByDefault = 1;

struct State {
    /// Held while a line is written, so that all outputs get the lines in the same order.
    SRWLOCK lock = SRWLOCK_INIT;
    bool console = kConsoleByDefault != 0;
    standins::LineFile file;
    standins::CallbackSlot<LogKitSink> sink;
};

State state;

std::wstring TimeAndLevel(int level) {
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    wchar_t text[64] = L"";
    std::swprintf(text, std::size(text), L"%04u-%02u-%02u %02u:%02u:%02u.%03u [%d] ", now.wYear,
                  now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds,
                  level);
    return text;
}

/// A line break inside the text, say from a device's name, must not look like a second line.
std::wstring OnOneLine(std::wstring text) {
    std::replace_if(
        text.begin(), text.end(), [](wchar_t unit) { return unit == L'\r' || unit == L'\n'; },
        L' ');
    return text;
}

}  // namespace

VrLogger* VrLogger::GetInstance() {
    static VrLogger instance;
    return &instance;
}

void VrLogger::Log(LOG_MESSAGE_LEVEL level, std::wstringstream& stream) {
    const std::wstring text = stream.str();
    const std::wstring line = TimeAndLevel(level) + OnOneLine(text);

    const ExclusiveLock exclusive(state.lock);
    if (!exclusive.IsHeld()) {
        return;
    }
    if (state.console) {
        standins::WriteStandardLine(STD_OUTPUT_HANDLE, line);
    }
    if (state.file.IsOpen()) {
        state.file.Write(workbench::ToUtf8(line));
    }
    state.sink.Call(static_cast<int>(level), text.c_str());
}

void LogKit_SetSink(LogKitSink sink, void* context) { state.sink.Set(sink, context); }

void LogKit_SetConsole(int enabled) {
    const ExclusiveLock exclusive(state.lock);
    state.console = enabled != 0;
}

int LogKit_OpenFile(const wchar_t* path) {
    const ExclusiveLock exclusive(state.lock);
    return static_cast<int>(state.file.Open(path));
}

void LogKit_CloseFile() {
    const ExclusiveLock exclusive(state.lock);
    state.file.Close();
}

void LogKit_Reset() {
    LogKit_SetSink(nullptr, nullptr);
    LogKit_SetConsole(kConsoleByDefault);
    LogKit_CloseFile();
}
