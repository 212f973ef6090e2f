#include "host/views/screen.h"

#include <windows.h>

#include <cstdio>

namespace host {

using workbench::Printable;
using workbench::TextLines;

namespace {

constexpr char kIndent[] = "                      ";

struct KindLook {
    const char* name;
    const char* colour;  ///< Console sequence, or empty for the console's own colour.
};

/// In the order of LineKind.
constexpr KindLook kLooks[] = {{"step", "\x1b[1m"},  {"note", ""},          {"log", "\x1b[2m"},
                               {"log!", "\x1b[31m"}, {"event", "\x1b[36m"}, {"script", "\x1b[33m"},
                               {"wait", "\x1b[2m"},  {"warn", "\x1b[31m"}};

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

Screen::Screen(const RunClock& theClock, bool isQuiet)
    : clock(theClock), quiet(isQuiet), coloured(PrepareConsole()) {}

void Screen::Line(LineKind kind, std::string_view text, const TextLines& below) {
    if (quiet) {
        return;
    }
    const auto elapsed = clock.Elapsed();
    const KindLook look = kLooks[static_cast<std::size_t>(kind)];
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
