#include "support/reliability_record.h"

#include <windows.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace test_support {
namespace {

std::filesystem::path RecordOfThisProgram() {
    std::wstring program(32768, L'\0');
    program.resize(GetModuleFileNameW(/*hModule=*/nullptr, program.data(),
                                      static_cast<DWORD>(program.size())));
    const std::filesystem::path path(program);
    return path.parent_path().parent_path() / L"reliability" /
           path.stem().replace_extension(L".json");
}

}  // namespace

bool FullCounts() { return GetEnvironmentVariableW(L"TALLYPORT_FULL_COUNTS", nullptr, 0) != 0; }

ReliabilityRecord::ReliabilityRecord() : file(RecordOfThisProgram()) {
    std::filesystem::remove(file);
}

void ReliabilityRecord::Add(const std::string& what, std::uint64_t tried, std::uint64_t wrong) {
    rows.push_back({what, tried, wrong});
}

void ReliabilityRecord::Write() const {
    nlohmann::json record = {{"rows", nlohmann::json::array()}};
    for (const Row& row : rows) {
        record["rows"].push_back({{"what", row.what}, {"tried", row.tried}, {"wrong", row.wrong}});
    }
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << record.dump(2) << '\n';
    stream.close();
    if (!stream) {
        throw std::runtime_error("the record '" + file.string() + "' cannot be written");
    }
}

}  // namespace test_support
