#include "library/standins/temporary_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace standins_test {

TemporaryFile::TemporaryFile() {
    wchar_t folder[MAX_PATH] = L"";
    wchar_t name[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"tly", /*uUnique=*/0, name);
    path = name;
}

TemporaryFile::~TemporaryFile() { DeleteFileW(path.c_str()); }

std::string TemporaryFile::Bytes() const {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> TemporaryFile::Lines() const {
    std::istringstream bytes(Bytes());
    std::vector<std::string> lines;
    for (std::string line; std::getline(bytes, line) && !bytes.eof();) {
        lines.push_back(line);
    }
    return lines;
}

StreamCapture::StreamCapture(DWORD streamToCapture)
    : stream(streamToCapture),
      original(GetStdHandle(streamToCapture)),
      replacement(CreateFileW(file.Path(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    SetStdHandle(stream, replacement);
}

StreamCapture::~StreamCapture() {
    SetStdHandle(stream, original);
    CloseHandle(replacement);
}

}  // namespace standins_test
