#include "host/screen.h"

#include <windows.h>

#include <cstdio>

#include "host/machine_time.h"

namespace host {
namespace {

constexpr char kIndent[] = "                      ";

struct KindLook {
    const char* name;
    const char* colour;  ///< Console sequence, or empty for the console's own colour.
};

KindLook LookOf(LineKind kind) {
    switch (kind) {
        case LineKind::Step:
            return {"step", "\x1b[1m"};
        case LineKind::Note:
            return {"note", ""};
        case LineKind::Log:
            return {"log", "\x1b[2m"};
        case LineKind::LogError:
            return {"log!", "\x1b[31m"};
        case LineKind::Event:
            return {"event", "\x1b[36m"};
        case LineKind::Script:
            return {"script", "\x1b[33m"};
        case LineKind::Wait:
            return {"wait", "\x1b[2m"};
        case LineKind::Warning:
            return {"warn", "\x1b[31m"};
    }
    return {"", ""};
}

/// Asks the console, if standard output is one, for UTF-8 and colours.
bool PrepareConsole() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (!GetConsoleMode(output, &mode)) {
        return false;
    }
    SetConsoleOutputCP(CP_UTF8);
    return SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

}  // namespace

Screen::Screen(const RunClock& theClock, Detail wanted)
    : clock(theClock), detail(wanted), coloured(PrepareConsole()) {}

void Screen::Line(LineKind kind, std::string_view text, const TextLines& below) {
    if (detail == Detail::SummaryOnly) {
        return;
    }
    const auto elapsed = clock.Elapsed();
    const KindLook look = LookOf(kind);
    char front[64];
    std::snprintf(front, sizeof(front), "%13s  %-6s ",
                  elapsed ? FormatMachineTime(*elapsed).c_str() : "", look.name);
    std::string block = front + Printable(text) + "\n";
    for (const std::string& line : below) {
        block += line.empty() ? "\n" : kIndent + Printable(line) + "\n";
    }
    const bool paint = coloured && look.colour[0] != '\0';
    Write(paint ? look.colour + block + "\x1b[0m" : block);
}

void Screen::Text(const TextLines& lines) {
    std::string block;
    for (const std::string& line : lines) {
        block += Printable(line) + "\n";
    }
    Write(block);
}

void Screen::Write(const std::string& text) {
    const std::lock_guard<std::mutex> lock(mutex);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

}  // namespace host
