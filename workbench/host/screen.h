// What the person sees.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "host/run_clock.h"
#include "host/text_table.h"

namespace host {

/// What a line is about; shown in front of it.
enum class LineKind { Step, Note, Log, LogError, Event, Script, Wait, Warning };

/// Writes to standard output, in UTF-8, with colours only where that is a console. Safe to use from
/// any thread; lines come out whole.
class Screen {
public:
    enum class Detail {
        Everything,
        SummaryOnly,  ///< Only what comes through Text.
    };

    /// `theClock` gives the time in front of the lines and must outlive the screen.
    Screen(const RunClock& theClock, Detail wanted);

    /// A line with machine time and kind, and lines that belong to it below.
    void Line(LineKind kind, std::string_view text, const TextLines& below = {});

    /// Bare lines.
    void Text(const TextLines& lines);

private:
    void Write(const std::string& text);

    const RunClock& clock;
    const Detail detail;
    bool coloured = false;
    std::mutex mutex;
};

}  // namespace host
