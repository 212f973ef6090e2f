// Machine files that are nearly right: they load, or one line says what is wrong and where.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "fuzz/campaign.h"
#include "fuzz/texts.h"
#include "simulation/call_text.h"
#include "simulation/machine_loader.h"

namespace {

using fuzz::Require;
using nlohmann::json;

constexpr char kFileName[] = "desk.json";

std::string TextOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

const std::string& Original() {
    static const std::string text = TextOf(FUZZ_FOLDER "/machine_files/every_section.json");
    return text;
}

/// Every value of the tree, the root first.
void Collect(json& value, std::vector<json*>& values) {
    values.push_back(&value);
    if (value.is_structured()) {
        for (json& member : value) {
            Collect(member, values);
        }
    }
}

/// Puts another value, or one from elsewhere in the document, in the place of one.
void ChangeTree(fuzz::Random& random, json& document) {
    static const json kValues = json::parse(R"([null, true, 0, -1, 65536, 4294967296, 1.5,
        -9223372036854775808, 18446744073709551615, [], {}, "", "1.2.3.99999", "{3D2F7A10-6C1B}",
        "${n:9Z}", "${n", "0G", "internal", "S-1-5", "a\nb", {"ids": 1}, {"a\nb": 1}])");
    std::vector<json*> values;
    Collect(document, values);
    // Not the root, which would leave nothing of the document.
    json& place = *values[values.size() == 1 ? 0 : random.Between(1, values.size() - 1)];
    place = json(random.OneIn(4) ? *random.Pick(values) : random.Pick(kValues));
}

void ChangeText(fuzz::Random& random, std::string& text) {
    constexpr const char* kInsertions[] = {"\"",    "{",       "}",    "[",       "]",
                                           ",",     ":",       "null", "\\u0000", "\n",
                                           "1e999", "\\ud800", "\xFF", "//",      "\xC0\x80"};
    const std::size_t position = random.Below(text.size() + 1);
    switch (random.Below(4)) {
        case 0:
            text.resize(position);
            break;
        case 1:
            text.erase(position, random.Below(20));
            break;
        case 2:
            // Too deep for any recursion, yet bearable for a heap that is checked at each call.
            text.insert(position, std::string(random.OneIn(64) ? 20000 : random.Below(50), '['));
            break;
        default:
            text.insert(position, random.OneIn(2) ? random.Pick(kInsertions)
                                                  : fuzz::MakeBytes(random, random.Below(8)));
            break;
    }
}

/// Most results are still JSON.
std::string MakeMachineFile(fuzz::Random& random) {
    json tree = json::parse(Original());
    for (std::size_t changes = random.Below(4); changes > 0; --changes) {
        ChangeTree(random, tree);
    }
    std::string text = tree.dump();
    if (random.OneIn(3)) {
        ChangeText(random, text);
    }
    return text;
}

/// What is none does not come back.
bool IsUtf8(const std::string& text) {
    return simulation::ToUtf8(simulation::FromUtf8(text)) == text;
}

void CheckMachineFile(const std::string& document) {
    try {
        simulation::ParseMachine(document, kFileName);
    } catch (const simulation::MachineFileError& error) {
        const std::string complaint = error.what();
        bool hasPlace = false;
        for (const char* place : {"/", "the document: ", "the key ", "not JSON: "}) {
            hasPlace = hasPlace || complaint.rfind(kFileName + (": " + std::string(place)), 0) == 0;
        }
        Require(hasPlace, "the complaint names file and place", complaint);
        Require(std::none_of(complaint.begin(), complaint.end(),
                             [](char unit) { return static_cast<unsigned char>(unit) < 0x20; }),
                "the complaint is one line", complaint);
        Require(IsUtf8(complaint), "the complaint is UTF-8", complaint);
    }
}

TEST(MachineFileFuzz, LoadsOrSaysInALineWhatIsWrong) {
    EXPECT_NO_THROW(simulation::ParseMachine(Original(), kFileName));
    fuzz::TryInputs("machine files", 20000, MakeMachineFile, CheckMachineFile);
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
