// Devices with awkward texts, held against a model of their chunks.
#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "device_reporter/device_chunks.h"
#include "support/device_list_model.h"

namespace {

using DeviceReporter::DeviceInfo;

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

TEST(ChunksOfAwkwardTexts, AreByteForByteWhatTheRulesGive) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        const auto devices = AwkwardTexts(seed).Devices(static_cast<int>(seed % 50));
        for (const bool withName : {true, false}) {
            const auto chunks = DeviceReporter::SerializeDeviceList(devices, withName);
            ASSERT_EQ(chunks, test_support::ExpectedChunks(devices, withName)) << "seed " << seed;
            for (const std::string& chunk : chunks) {
                // The limit of an event's value.
                ASSERT_LE(chunk.size(), 1024u);
            }
        }
    }
}

}  // namespace
