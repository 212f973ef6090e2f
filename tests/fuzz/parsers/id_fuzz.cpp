// Device instance ids and monitor paths.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "device_reporter/device_text.h"
#include "device_reporter/edid_registry.h"
#include "fuzz/campaign.h"
#include "fuzz/texts.h"

namespace {

using fuzz::RequireSame;

std::wstring MakeInstanceId(fuzz::Random& random) {
    return fuzz::MakeFromPieces(random,
                                {L"USB\\",
                                 L"HID\\",
                                 L"BTHENUM\\",
                                 L"PCI\\",
                                 L"DISPLAY\\",
                                 L"DISPLAY",
                                 L"VID_",
                                 L"VID&",
                                 L"VEN_",
                                 L"&PID_",
                                 L"&DEV_",
                                 L"046D",
                                 L"C52B",
                                 L"0002046D",
                                 L"ABC1234",
                                 L"\\",
                                 L"6&12AB",
                                 L"&MI_00",
                                 L"VID_046D&PID_C52B\\",
                                 L"VEN_1F4C&DEV_2A10&SUBSYS_0",
                                 L"VID&0002046D_PID&B012"},
                                259);
}

/// The marker's piece, or nothing when it does not lie wholly within the id and short of its end.
std::wstring_view Piece(std::wstring_view id, std::wstring_view marker, std::size_t length) {
    for (std::size_t i = 0; i + marker.size() <= id.size(); ++i) {
        if (id.substr(i, marker.size()) == marker) {
            return id.size() - i > length ? id.substr(i, length) : std::wstring_view();
        }
    }
    return {};
}

void CheckInstanceId(const std::wstring& id) {
    std::wstring_view expected = Piece(id, L"DISPLAY\\", 15);
    expected = expected.empty() ? Piece(id, L"VID&", 21) : expected;
    expected = expected.empty() ? Piece(id, L"VID_", 17) : expected;
    expected = expected.empty() ? Piece(id, L"VEN_", 17) : expected;
    const std::wstring vendorId = DeviceReporter::GetVendorId(id);
    RequireSame(vendorId, std::wstring(expected), "the first marker with a whole piece wins");
}

std::wstring MakeMonitorPath(fuzz::Random& random) {
    return fuzz::MakeFromPieces(random,
                                {L"\\\\?\\", L"DISPLAY", L"DISPLAY#", L"#", L"ABC1234#", L"ABC1234",
                                 L"5&2a3b4c&0&UID4353", L"#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}",
                                 L"DISPLAY#ABC1234#5&2a&0&UID4353#", L"display#"},
                                127);
}

/// The registry path in between, by looking for each "#" by hand.
std::wstring ExpectedRegistryPath(const std::wstring& path) {
    std::wstring registryPath = L"SYSTEM\\CurrentControlSet\\Enum\\";
    int separators = 0;
    const std::size_t begin = path.find(L"DISPLAY");
    for (std::size_t i = begin; i < path.size() && separators < 3; ++i) {
        const bool separator = path[i] == L'#';
        registryPath += separator ? L'\\' : path[i];
        separators += separator ? 1 : 0;
    }
    return separators == 3 ? registryPath + L"Device Parameters" : L"";
}

void CheckMonitorPath(const std::wstring& path) {
    RequireSame(DeviceReporter::GetEditRegPath(path), ExpectedRegistryPath(path),
                "three pieces from DISPLAY on name the key");
    const std::wstring vendorId = DeviceReporter::CutPiece(path, L"DISPLAY#", 15);
    RequireSame(vendorId, std::wstring(Piece(path, L"DISPLAY#", 15)),
                "the vendor id is the model if something follows it");
}

TEST(IdFuzz, CutsTheVendorIdOutOfTheInstanceId) {
    fuzz::TryInputs("instance ids", 300000, MakeInstanceId, CheckInstanceId);
}

TEST(IdFuzz, CutsTheRegistryPathOutOfTheMonitorPath) {
    fuzz::TryInputs("monitor paths", 200000, MakeMonitorPath, CheckMonitorPath);
}

}  // namespace
