// Thousands of devices with awkward texts, read back by a reader of its own.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "device_reporter/device_chunks.h"
#include "support/strict_json.h"
#include "unit/device_list/chunk_model.h"

namespace {

using device_list_test::ExpectedChunks;
using device_list_test::ExpectedText;
using DeviceReporter::DeviceInfo;
using DeviceReporter::SerializeDeviceList;

class AwkwardTexts {
public:
    explicit AwkwardTexts(unsigned seed) : random(seed) {}

    std::vector<DeviceInfo> Devices(int count) {
        std::vector<DeviceInfo> devices(static_cast<std::size_t>(count));
        for (DeviceInfo& device : devices) {
            for (std::wstring* field :
                 {&device.name, &device.manufacturer, &device.className, &device.description,
                  &device.vendorId, &device.instanceId, &device.parent, &device.containerId}) {
                *field = Text();
            }
        }
        return devices;
    }

private:
    std::wstring Text() {
        // Mostly harmless, so that chunks hold several devices; NUL is rare as it ends the text.
        static const std::wstring kPieces[] = {L"a",
                                               L"Z",
                                               L"0",
                                               L" ",
                                               L"\"",
                                               L"\\",
                                               L"\n",
                                               L"\x01",
                                               L"\x1F",
                                               L"\x7F",
                                               L"\u0080",
                                               L"\u00E9",
                                               L"\u07FF",
                                               L"\u0800",
                                               L"\u6771",
                                               L"\uFFFD",
                                               L"\uFFFF",
                                               L"\xD83D\xDDA8",
                                               L"\xDBFF\xDFFF",
                                               L"\xD800",
                                               L"\xDC00",
                                               std::wstring(1, L'\0')};
        std::wstring text;
        const unsigned length = random() % 41;
        const bool harmless = random() % 2 == 0;
        while (text.size() < length) {
            text += kPieces[random() % (harmless ? 4 : std::size(kPieces))];
        }
        return text;
    }

    std::mt19937 random;
};

class ChunkContent : public testing::TestWithParam<bool> {};

TEST_P(ChunkContent, IsByteForByteWhatTheRulesGive) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        const auto devices = AwkwardTexts(seed).Devices(static_cast<int>(seed % 50));
        ASSERT_EQ(SerializeDeviceList(devices, GetParam()), ExpectedChunks(devices, GetParam()))
            << "seed " << seed;
    }
}

TEST_P(ChunkContent, ReadsBackAsTheDevicesInOrder) {
    const auto devices = AwkwardTexts(4711).Devices(1000);
    std::vector<std::vector<std::pair<std::string, std::string>>> expected;
    for (const DeviceInfo& device : devices) {
        expected.push_back({{"class", ExpectedText(device.className)},
                            {"desc", ExpectedText(device.description)},
                            {"device", ExpectedText(device.vendorId)},
                            {"maker", ExpectedText(device.manufacturer)}});
        if (GetParam()) {
            expected.back().emplace_back("name", ExpectedText(device.name));
        }
    }
    std::vector<std::vector<std::pair<std::string, std::string>>> readBack;
    for (const std::string& chunk : SerializeDeviceList(devices, GetParam())) {
        for (const test_support::Json& object : test_support::ParseCompactJson(chunk).items) {
            readBack.emplace_back();
            for (const auto& [key, value] : object.members) {
                EXPECT_EQ(value.kind, test_support::Json::Kind::String);
                readBack.back().emplace_back(key, value.text);
            }
        }
    }
    EXPECT_EQ(readBack, expected);
}

TEST_P(ChunkContent, StaysBelowTheLimitOfAnEventsValue) {
    for (const std::string& chunk :
         SerializeDeviceList(AwkwardTexts(99).Devices(500), GetParam())) {
        EXPECT_LE(chunk.size(), 1024u);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, ChunkContent, testing::Bool(), [](const auto& testInfo) {
    return testInfo.param ? "DevicesWithNames" : "DevicesWithoutNames";
});

}  // namespace
