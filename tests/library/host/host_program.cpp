#include "library/host/host_program.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace host_test {
namespace {

constexpr std::size_t kKindColumn = 15;
constexpr std::size_t kTextColumn = 22;

bool IsOfKind(const std::string& line, std::string_view kind) {
    const std::string front = std::string(kind) + " ";
    return line.size() > kTextColumn && line.compare(kKindColumn, front.size(), front) == 0;
}

}  // namespace

test_support::ChildResult RunHost(const std::vector<std::wstring>& arguments,
                                  const std::wstring& program, std::chrono::milliseconds limit) {
    const std::wstring path =
        program.empty() ? test_support::ProgramFolder() + L"\\tallyport_host.exe" : program;
    auto result =
        test_support::RunChild(path, arguments, limit, test_support::StandardError::Apart);
    if (!result.finished) {
        throw std::runtime_error("the host did not end; it wrote: " + result.output);
    }
    return result;
}

std::vector<std::string> LinesOf(std::string_view text) {
    std::vector<std::string> lines;
    std::istringstream stream{std::string(text)};
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> ShownLines(const std::string& output, std::string_view kind) {
    std::vector<std::string> texts;
    for (const std::string& line : LinesOf(output)) {
        if (IsOfKind(line, kind)) {
            texts.push_back(line.substr(kTextColumn));
        }
    }
    return texts;
}

std::vector<std::string> LinesBelow(const std::string& output, std::string_view kind,
                                    std::string_view start) {
    const std::string indent(kTextColumn, ' ');
    std::vector<std::string> below;
    bool found = false;
    for (const std::string& line : LinesOf(output)) {
        if (found) {
            if (line.compare(0, kTextColumn, indent) != 0) {
                break;
            }
            below.push_back(line.substr(kTextColumn));
        }
        found =
            found || (IsOfKind(line, kind) && line.compare(kTextColumn, start.size(), start) == 0);
    }
    return below;
}

std::wstring PluginFolder() { return test_support::ProgramFolder() + L"\\host_test_plugins"; }

void WriteFile(const std::wstring& path, std::string_view content) {
    std::ofstream file(std::filesystem::path(path), std::ios::binary);
    file << content;
    if (!file.flush()) {
        throw std::runtime_error("a file for the test cannot be written");
    }
}

std::string ReadFile(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    if (!file) {
        throw std::runtime_error("a file of the test cannot be read");
    }
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::vector<nlohmann::json> ReadRecord(const std::wstring& path) {
    const std::vector<std::string> lines = LinesOf(ReadFile(path));
    std::vector<nlohmann::json> events(lines.size());
    std::transform(lines.begin(), lines.end(), events.begin(),
                   [](const std::string& line) { return nlohmann::json::parse(line); });
    return events;
}

std::vector<int> IdsOf(const std::vector<nlohmann::json>& events) {
    std::vector<int> ids;
    ids.reserve(events.size());
    for (const nlohmann::json& event : events) {
        ids.push_back(event.at("id").get<int>());
    }
    return ids;
}

}  // namespace host_test
