// What the person sees.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "common/text_table.h"
#include "host/machine_time.h"

namespace host {

/// What a line is about; shown in front of it.
enum class LineKind { Step, Note, Log, LogError, Event, Script, Wait, Warning };

/// Writes to standard output, in UTF-8, with colours only where that is a console. Safe to use from
/// any thread; lines come out whole.
class Screen {
public:
    /// `theClock` gives the time in front of the lines and must outlive the screen. A quiet one
    /// shows only what comes through Text.
    Screen(const RunClock& theClock, bool isQuiet);

    /// A line with machine time and kind, and lines that belong to it below.
    void Line(LineKind kind, std::string_view text, const workbench::TextLines& below = {});

    /// Bare lines.
    void Text(const workbench::TextLines& lines);

private:
    void Write(const std::string& text);

    const RunClock& clock;
    const bool quiet;
    bool coloured = false;
    std::mutex mutex;
};

}  // namespace host
