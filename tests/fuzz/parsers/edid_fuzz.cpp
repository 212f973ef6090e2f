// EDIDs of any length and content.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "device_reporter/edid.h"
#include "fuzz/campaign.h"
#include "fuzz/texts.h"

namespace {

using fuzz::Require;
using fuzz::RequireSame;

constexpr std::size_t kLeastSize = 10;
constexpr std::size_t kMaskedBegin = 12;
constexpr std::size_t kMaskedEnd = 14;

std::string MakeEdid(fuzz::Random& random) {
    constexpr std::size_t kSizes[] = {10, 11, 12, 13, 14, 15, 128, 256};
    std::size_t size = random.OneIn(4) ? random.Between(kLeastSize, 300) : random.Pick(kSizes);
    if (random.OneIn(200)) {
        size = random.Below(kLeastSize);
    }
    std::string edid = fuzz::MakeBytes(random, size);
    if (size >= kLeastSize && !random.OneIn(8)) {
        std::size_t code = random.Below(2);
        for (int letter = 0; letter < 3; ++letter) {
            code = code << 5 | random.Between(1, 26);
        }
        edid[8] = static_cast<char>(code >> 8);
        edid[9] = static_cast<char>(code & 0xFF);
    }
    return edid;
}

/// The manufacturer in front of "#", or nothing when one of the letters is none.
std::wstring ExpectedVendor(const std::string& edid) {
    const unsigned high = static_cast<unsigned char>(edid[8]);
    const unsigned low = static_cast<unsigned char>(edid[9]);
    std::wstring vendor;
    for (const unsigned letter : {high >> 2 & 31, (high & 3) << 3 | low >> 5, low & 31}) {
        if (letter < 1 || letter > 26) {
            return {};
        }
        vendor += L"?ABCDEFGHIJKLMNOPQRSTUVWXYZ"[letter];
    }
    return vendor + L"#";
}

int Digit(wchar_t character) {
    constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
    const std::size_t digit = kDigits.find(character);
    Require(digit != std::wstring_view::npos, "only upper-case hex digits occur", character);
    return static_cast<int>(digit);
}

void CheckHex(const std::wstring& hex, const std::string& edid) {
    RequireSame(hex.size(), edid.size() * 2, "there are two digits for each byte");
    for (std::size_t i = 0; i < edid.size(); ++i) {
        const int byte = Digit(hex[2 * i]) * 16 + Digit(hex[2 * i + 1]);
        const bool masked = i >= kMaskedBegin && i < kMaskedEnd;
        RequireSame(byte, masked ? 0 : static_cast<unsigned char>(edid[i]),
                    masked ? "bytes 12 and 13 are blanked" : "the other bytes are told");
    }
}

void CheckEdid(const std::string& edid) {
    std::vector<std::wstring> data = {L"before"};
    bool outOfRange = false;
    bool decoded = false;
    try {
        decoded = DeviceReporter::PushEdidToData(data, edid);
    } catch (const std::out_of_range&) {
        outOfRange = true;
    }
    RequireSame(outOfRange, edid.size() < kLeastSize, "an EDID of less than ten bytes is refused");
    if (outOfRange) {
        return;
    }
    const std::wstring vendor = ExpectedVendor(edid);
    RequireSame(decoded, !vendor.empty(), "an EDID decodes when all three letters are letters");
    RequireSame(data.size(), decoded ? 3u : 1u, "two texts are added or none");
    RequireSame(data[0], L"before", "what was there stays");
    if (decoded) {
        CheckHex(data[1], edid);
        RequireSame(data[2], vendor, "the manufacturer is three letters and #");
    }
}

TEST(EdidFuzz, TellsEveryByteButTheMaskedOnes) {
    fuzz::TryInputs("EDIDs", 400000, MakeEdid, CheckEdid);
}

}  // namespace
