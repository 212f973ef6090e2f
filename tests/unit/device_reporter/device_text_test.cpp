#include "device_reporter/device_text.h"

#include <cerrno>
#include <iterator>
#include <string>

#include "simulation/compiler_runtime.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::AppendUnique;
using DeviceReporter::GetVendorId;
using DeviceReporter::GuidToString;

// --- Merged lines ---

struct Merge {
    const wchar_t* existing;
    const wchar_t* added;
    const wchar_t* merged;
};

TEST(AppendUnique, PutsTheAddedTextOnALineOfItsOwnUnlessItIsThereAlready) {
    for (const auto& [existing, added, merged] : {
             Merge{L"Foo", L"", L"Foo"},
             Merge{L"", L"", L""},
             Merge{L"", L"Foo", L"Foo"},
             Merge{L"Foo", L"Bar", L"Foo\nBar"},
             Merge{L"Foo\nBar", L"Baz", L"Foo\nBar\nBaz"},
             Merge{L"Foo", L"Foo", L"Foo"},
             Merge{L"Foo\nBar\nBaz", L"Bar", L"Foo\nBar\nBaz"},
             // Part of a line, or of two.
             Merge{L"USB Mouse", L"Mouse", L"USB Mouse"},
             Merge{L"USB Mouse", L"B M", L"USB Mouse"},
             Merge{L"AB\nCD", L"B\nC", L"AB\nCD"},
             // Not part of it.
             Merge{L"Mouse", L"USB Mouse", L"Mouse\nUSB Mouse"},
             Merge{L"Mouse", L"mouse", L"Mouse\nmouse"},
         }) {
        EXPECT_EQ(AppendUnique(existing, added), merged);
    }
}

// --- The vendor and product piece ---

struct Marker {
    std::wstring text;
    std::size_t pieceLength;
};

const Marker kMarkers[] = {{L"DISPLAY\\", 15}, {L"VID&", 21}, {L"VID_", 17}, {L"VEN_", 17}};

/// A marker with digits behind it: the piece of that length.
std::wstring PieceOf(const Marker& marker) {
    std::wstring piece = marker.text;
    while (piece.size() < marker.pieceLength) {
        piece += static_cast<wchar_t>(L'0' + piece.size() % 10);
    }
    return piece;
}

struct Id {
    const wchar_t* instanceId;
    const wchar_t* vendorId;
};

TEST(VendorId, IsCutFromIdsOfEachKind) {
    for (const auto& [instanceId, vendorId] : {
             Id{L"DISPLAY\\DEL40A8\\5&1A2B3C&0&UID4353", L"DISPLAY\\DEL40A8"},
             Id{L"BTHENUM\\{0000110B-0000-1000-8000-00805F9B34FB}"
                L"_VID&0001009E_PID&400A\\7&1F&0&2811A5B1C2D3_C00000000",
                L"VID&0001009E_PID&400A"},
             Id{L"USB\\VID_046D&PID_C52B\\6&12AB", L"VID_046D&PID_C52B"},
             Id{L"PCI\\VEN_8086&DEV_9A49&SUBSYS_22128086&REV_01\\3&11583659&0&10",
                L"VEN_8086&DEV_9A49"},
             // At the first occurrence of its marker.
             Id{L"USB\\VID_1111&PID_1111&VID_2222&PID_2222\\0", L"VID_1111&PID_1111"},
             Id{L"X\\DISPLAY\\AAA0001\\DISPLAY\\BBB0002\\0", L"DISPLAY\\AAA0001"},
             // Of a Bluetooth device with a USB marker too: the longer piece, where it fits.
             Id{L"VID_1111&PID_2222\\VID&0002046D_PID&B01A\\", L"VID&0002046D_PID&B01A"},
             Id{L"VID_1111&PID_2222\\VID&0002046D_PID&B01A", L"VID_1111&PID_2222"},
         }) {
        EXPECT_EQ(GetVendorId(instanceId), vendorId);
    }
}

TEST(VendorId, IsEmptyForIdsWithoutMarker) {
    for (const wchar_t* const instanceId :
         {L"", L"ROOT\\SYSTEM\\0000_AND_SOME_MORE_CHARACTERS",
          L"ACPI\\GENUINEINTEL_-_INTEL64_FAMILY_6_MODEL_140\\_1", L"usb\\vid_046d&pid_c52b\\6&12ab",
          // The display marker has a backslash at its end.
          L"DISPLAY#DEL40A8#5&1A2B3C&0&UID4353", L"ROOT\\DISPLAY_ADAPTER_OF_SOME_SORT\\0000"}) {
        EXPECT_EQ(GetVendorId(instanceId), L"");
    }
}

TEST(VendorId, NeedsOneMoreCharacterBehindThePiece) {
    for (const Marker& marker : kMarkers) {
        const std::wstring piece = PieceOf(marker);
        EXPECT_EQ(GetVendorId(L"BUS\\" + piece + L"X"), piece);
        EXPECT_EQ(GetVendorId(piece + L"\\"), piece);
        EXPECT_EQ(GetVendorId(L"BUS\\" + piece), L"");
        EXPECT_EQ(GetVendorId(piece), L"");
        EXPECT_EQ(GetVendorId(L"BUS\\" + piece.substr(0, piece.size() - 1)), L"");
        EXPECT_EQ(GetVendorId(marker.text), L"");
    }
}

TEST(VendorId, PrefersTheMarkersInTheirOrderAndFallsBackWhereAPieceDoesNotFit) {
    for (const Marker& preferred : kMarkers) {
        for (const Marker* other = &preferred + 1; other != std::end(kMarkers); ++other) {
            const std::wstring piece = PieceOf(preferred);
            const std::wstring otherPiece = PieceOf(*other);
            EXPECT_EQ(GetVendorId(otherPiece + L"\\" + piece + L"\\0"), piece);
            EXPECT_EQ(GetVendorId(piece + L"\\" + otherPiece + L"\\0"), piece);
            EXPECT_EQ(GetVendorId(otherPiece + L"\\" + piece), otherPiece);
        }
    }
}

// --- GUIDs ---

class GuidText : public device_tests::DeviceTest {};

TEST_F(GuidText, IsUpperCaseInBracesWithItsFieldsPaddedAndInOrder) {
    EXPECT_EQ(GuidToString(
                  {0x89ABCDEF, 0x0123, 0x4567, {0x80, 0x91, 0xA2, 0xB3, 0xC4, 0xD5, 0xE6, 0xF7}}),
              L"{89ABCDEF-0123-4567-8091-A2B3C4D5E6F7}");
    EXPECT_EQ(GuidToString({0xA, 0xB, 0xC, {1, 2, 3, 4, 5, 6, 7, 8}}),
              L"{0000000A-000B-000C-0102-030405060708}");
    EXPECT_THAT(Log(), IsEmpty());
}

std::size_t sizeGiven = 0;

int FailToFormat(wchar_t* buffer, std::size_t size, const wchar_t*, ...) {
    sizeGiven = size;
    buffer[0] = L'\0';
    errno = EINVAL;
    return -1;
}

int FailBelowTheFormatter(std::uint64_t /*options*/, wchar_t* buffer, std::size_t size, ...) {
    return FailToFormat(buffer, size, nullptr);
}

TEST_F(GuidText, IsEmptyWithALogLineWhenTheFormatterFails) {
    simulation::ImportRedirection imports(GetModuleHandleW(nullptr));
    imports.RedirectImported(
        {simulation::Replace<decltype(FailToFormat)>("swprintf_s", FailToFormat),
         simulation::Replace<decltype(FailBelowTheFormatter)>(simulation::runtime::kBoundedFormat,
                                                              FailBelowTheFormatter)});
    EXPECT_EQ(GuidToString({}), L"");
    EXPECT_THAT(Log(), ElementsAre("log 3 GUID TO String failed(DeviceReporter::GuidToString)"));
    EXPECT_EQ(sizeGiven, 64u);
}

}  // namespace
