// The built host as a child process.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "support/child_process.h"

namespace test_support {

/// Runs a host to its end, the one of the build unless another is named. Throws
/// std::runtime_error when it does not end within `limit`.
ChildResult RunHost(const std::vector<std::wstring>& arguments, const std::wstring& program = {},
                    std::chrono::milliseconds limit = kPatienceWithChildren);

std::vector<std::string> LinesOf(std::string_view text);

/// A line that the host shows, with machine time and kind ("script", "event").
struct ScreenLine {
    std::chrono::seconds time{};
    std::string kind;
    std::string text;
};

/// The lines that have a machine time, without what is indented below them.
std::vector<ScreenLine> ScreenLines(std::string_view output);

/// The texts of the shown lines of one kind ("step", "log"), in order, without time and kind.
std::vector<std::string> ShownLines(const std::string& output, std::string_view kind);

/// The indented lines below the first line of that kind that begins with `start`.
std::vector<std::string> LinesBelow(const std::string& output, std::string_view kind,
                                    std::string_view start);

/// Writes a file for a test; reads one back. Throw std::runtime_error.
void WriteFile(const std::wstring& path, std::string_view content);
std::string ReadFile(const std::wstring& path);

}  // namespace test_support
