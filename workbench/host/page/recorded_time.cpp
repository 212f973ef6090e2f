#include "host/page/recorded_time.h"

#include <windows.h>

namespace host {
namespace {

/// 1970 in the system's file times, which count steps of 100 ns from 1601.
constexpr std::int64_t kEpoch = 116444736000000000;
constexpr std::int64_t kStepsPerMillisecond = 10000;

std::optional<std::int64_t> ToMilliseconds(const SYSTEMTIME& time) {
    FILETIME file = {};
    if (!SystemTimeToFileTime(&time, &file)) {
        return std::nullopt;
    }
    const std::int64_t steps =
        static_cast<std::int64_t>(file.dwHighDateTime) << 32 | file.dwLowDateTime;
    return (steps - kEpoch) / kStepsPerMillisecond;
}

/// Reads a text in which every 0 of `form` is a digit and everything else is as in `form`.
std::optional<SYSTEMTIME> ParseForm(std::string_view text, std::string_view form) {
    if (text.size() != form.size()) {
        return std::nullopt;
    }
    WORD numbers[7] = {};
    std::size_t count = 0;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (form[i] == '0' ? !isDigit : text[i] != form[i]) {
            return std::nullopt;
        }
        if (form[i] == '0') {
            numbers[count] = static_cast<WORD>(numbers[count] * 10 + (text[i] - '0'));
        } else if (count < 6) {
            ++count;
        }
    }
    SYSTEMTIME time = {};
    time.wYear = numbers[0];
    time.wMonth = numbers[1];
    time.wDay = numbers[2];
    time.wHour = numbers[3];
    time.wMinute = numbers[4];
    time.wSecond = numbers[5];
    time.wMilliseconds = numbers[6];
    return time;
}

}  // namespace

std::int64_t UtcNow() {
    SYSTEMTIME now = {};
    GetSystemTime(&now);
    return ToMilliseconds(now).value_or(0);
}

std::optional<std::int64_t> ParseUtcTime(std::string_view text) {
    const auto time = ParseForm(text, "0000-00-00T00:00:00.000Z");
    return time ? ToMilliseconds(*time) : std::nullopt;
}

std::optional<std::int64_t> ParseLocalTime(std::string_view text) {
    const auto local = ParseForm(text, "0000-00-00 00:00:00.000");
    SYSTEMTIME utc = {};
    if (!local || !TzSpecificLocalTimeToSystemTime(nullptr, &*local, &utc)) {
        return std::nullopt;
    }
    return ToMilliseconds(utc);
}

}  // namespace host
