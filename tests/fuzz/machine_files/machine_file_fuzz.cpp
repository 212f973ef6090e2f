// Machine files that are nearly right: they load, or one line says what is wrong and where.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/campaign.h"
#include "fuzz/machine_files/json_mutation.h"
#include "simulation/machine_loader.h"
#include "support/utf8_sequence.h"

namespace {

using fuzz::Require;

constexpr char kFileName[] = "desk.json";

std::string TextOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = test_support::Utf8SequenceLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

bool BeginsWith(std::string_view text, std::string_view begin) {
    return text.substr(0, begin.size()) == begin;
}

void CheckComplaint(const std::string& complaint) {
    const std::string file = std::string(kFileName) + ": ";
    Require(BeginsWith(complaint, file), "the complaint names the file", complaint);
    const std::string_view rest = std::string_view(complaint).substr(file.size());
    const bool hasPlace = BeginsWith(rest, "/") || BeginsWith(rest, "the document: ") ||
                          BeginsWith(rest, "the key ") || BeginsWith(rest, "not JSON: ");
    Require(hasPlace, "the complaint names the place", complaint);
    Require(std::none_of(complaint.begin(), complaint.end(),
                         [](char unit) { return static_cast<unsigned char>(unit) < 0x20; }),
            "the complaint is one line", complaint);
    Require(IsUtf8(complaint), "the complaint is UTF-8", complaint);
}

void CheckMachineFile(const std::string& document) {
    try {
        simulation::ParseMachine(document, kFileName);
    } catch (const simulation::MachineFileError& error) {
        CheckComplaint(error.what());
    }
}

std::string MakeMachineFile(fuzz::Random& random) {
    static const std::string original = TextOf(FUZZ_FOLDER "/machine_files/every_section.json");
    return fuzz_machine_files::Mutated(random, original);
}

TEST(MachineFileFuzz, LoadsOrSaysInALineWhatIsWrong) {
    fuzz::TryInputs("machine files", 20000, MakeMachineFile, CheckMachineFile);
}

TEST(MachineFileFuzz, StartsFromAFileThatLoads) {
    EXPECT_EQ(
        simulation::ParseMachine(TextOf(FUZZ_FOLDER "/machine_files/every_section.json"), kFileName)
            .devices.size(),
        4u);
}

/// Files that once broke the loader; each is called after what it did.
TEST(MachineFileRegression, LoadsOrSaysInALineWhatIsWrong) {
    std::size_t files = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(FUZZ_FOLDER "/regressions/machine_files")) {
        SCOPED_TRACE(entry.path().filename().string());
        EXPECT_NO_THROW(CheckMachineFile(TextOf(entry.path())));
        ++files;
    }
    EXPECT_GT(files, 0u);
}

}  // namespace
