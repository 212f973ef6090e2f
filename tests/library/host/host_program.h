// The built host as a child process.
#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "support/child_process.h"

namespace host_test {

/// Runs a host to its end, the one of the build unless another is named. Throws
/// std::runtime_error when it does not end within `limit`.
test_support::ChildResult RunHost(const std::vector<std::wstring>& arguments,
                                  const std::wstring& program = {},
                                  std::chrono::milliseconds limit = std::chrono::seconds(60));

std::vector<std::string> LinesOf(std::string_view text);

/// The texts of the shown lines of one kind ("step", "log"), in order, without time and kind.
std::vector<std::string> ShownLines(const std::string& output, std::string_view kind);

/// The indented lines below the first line of that kind that begins with `start`.
std::vector<std::string> LinesBelow(const std::string& output, std::string_view kind,
                                    std::string_view start);

/// Folder of the plug-ins that this test program builds.
std::wstring PluginFolder();

/// Writes a file for a test; reads one back. Throw std::runtime_error.
void WriteFile(const std::wstring& path, std::string_view content);
std::string ReadFile(const std::wstring& path);

/// The events of a record, in order.
std::vector<nlohmann::json> ReadRecord(const std::wstring& path);
std::vector<int> IdsOf(const std::vector<nlohmann::json>& events);

}  // namespace host_test
