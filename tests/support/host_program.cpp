#include "support/host_program.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test_support {
namespace {

constexpr std::size_t kKindColumn = 15;
constexpr std::size_t kTextColumn = 22;

bool IsOfKind(const std::string& line, std::string_view kind) {
    const std::string front = std::string(kind) + " ";
    return line.size() > kTextColumn && line.compare(kKindColumn, front.size(), front) == 0;
}

}  // namespace

ChildResult RunHost(const std::vector<std::wstring>& arguments, const std::wstring& program,
                    std::chrono::milliseconds limit) {
    const std::wstring path = program.empty() ? ProgramFolder() + L"\\tallyport_host.exe" : program;
    auto result = RunChild(path, arguments, limit, StandardError::Apart);
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

std::vector<ScreenLine> ScreenLines(std::string_view output) {
    std::vector<ScreenLine> screen;
    for (const std::string& line : LinesOf(output)) {
        int days = 0;
        int hours = 0;
        int minutes = 0;
        int seconds = 0;
        if (line.size() > kTextColumn &&
            std::sscanf(line.c_str(), "%dd %d:%d:%d", &days, &hours, &minutes, &seconds) == 4) {
            const std::string kind = line.substr(kKindColumn, kTextColumn - kKindColumn);
            screen.push_back({std::chrono::hours(days * 24 + hours) +
                                  std::chrono::minutes(minutes) + std::chrono::seconds(seconds),
                              kind.substr(0, kind.find(' ')), line.substr(kTextColumn)});
        }
    }
    return screen;
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

}  // namespace test_support
