#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_text.h"

namespace {

using DeviceReporter::GetVendorId;

struct Marker {
    std::wstring text;
    std::size_t pieceLength;
};

std::vector<Marker> Markers() {
    return {{L"DISPLAY\\", 15}, {L"VID&", 21}, {L"VID_", 17}, {L"VEN_", 17}};
}

/// A marker with digits behind it: the piece of that length.
std::wstring PieceOf(const Marker& marker) {
    std::wstring piece = marker.text;
    while (piece.size() < marker.pieceLength) {
        piece += static_cast<wchar_t>(L'0' + piece.size() % 10);
    }
    return piece;
}

/// An id of these pieces.
std::wstring JoinPieces(const std::vector<std::wstring>& pieces) {
    std::wstring id;
    for (const std::wstring& piece : pieces) {
        id += id.empty() ? L"" : L"\\";
        id += piece;
    }
    return id;
}

TEST(VendorId, IsCutFromIdsOfEachKind) {
    EXPECT_EQ(GetVendorId(L"DISPLAY\\DEL40A8\\5&1A2B3C&0&UID4353"), L"DISPLAY\\DEL40A8");
    EXPECT_EQ(GetVendorId(L"BTHENUM\\{0000110B-0000-1000-8000-00805F9B34FB}"
                          L"_VID&0001009E_PID&400A\\7&1F&0&2811A5B1C2D3_C00000000"),
              L"VID&0001009E_PID&400A");
    EXPECT_EQ(GetVendorId(L"USB\\VID_046D&PID_C52B\\6&12AB"), L"VID_046D&PID_C52B");
    EXPECT_EQ(GetVendorId(L"PCI\\VEN_8086&DEV_9A49&SUBSYS_22128086&REV_01\\3&11583659&0&10"),
              L"VEN_8086&DEV_9A49");
}

TEST(VendorId, NeedsOneMoreCharacterBehindThePiece) {
    for (const Marker& marker : Markers()) {
        const std::wstring piece = PieceOf(marker);
        EXPECT_EQ(GetVendorId(L"BUS\\" + piece + L"X"), piece);
        EXPECT_EQ(GetVendorId(piece + L"\\"), piece);
    }
}

TEST(VendorId, YieldsNothingWhenPieceEndsExactlyAtEndOfId) {
    for (const Marker& marker : Markers()) {
        EXPECT_EQ(GetVendorId(L"BUS\\" + PieceOf(marker)), L"");
        EXPECT_EQ(GetVendorId(PieceOf(marker)), L"");
    }
    EXPECT_EQ(GetVendorId(L"USB\\VID_046D&PID_C52B"), L"");
}

TEST(VendorId, YieldsNothingWhenPieceRunsPastEndOfId) {
    for (const Marker& marker : Markers()) {
        const std::wstring piece = PieceOf(marker);
        EXPECT_EQ(GetVendorId(L"BUS\\" + piece.substr(0, piece.size() - 1)), L"");
        EXPECT_EQ(GetVendorId(marker.text), L"");
    }
}

TEST(VendorId, IsEmptyForIdsWithoutMarker) {
    EXPECT_EQ(GetVendorId(L""), L"");
    EXPECT_EQ(GetVendorId(L"ROOT\\SYSTEM\\0000_AND_SOME_MORE_CHARACTERS"), L"");
    EXPECT_EQ(GetVendorId(L"ACPI\\GENUINEINTEL_-_INTEL64_FAMILY_6_MODEL_140\\_1"), L"");
}

TEST(VendorId, TellsLetterCasesApart) {
    EXPECT_EQ(GetVendorId(L"usb\\vid_046d&pid_c52b\\6&12ab"), L"");
}

TEST(VendorId, WantsTheBackslashOfTheDisplayMarker) {
    EXPECT_EQ(GetVendorId(L"DISPLAY#DEL40A8#5&1A2B3C&0&UID4353"), L"");
    EXPECT_EQ(GetVendorId(L"ROOT\\DISPLAY_ADAPTER_OF_SOME_SORT\\0000"), L"");
}

TEST(VendorId, BeginsAtTheFirstOccurrenceOfItsMarker) {
    EXPECT_EQ(GetVendorId(L"USB\\VID_1111&PID_1111&VID_2222&PID_2222\\0"), L"VID_1111&PID_1111");
    EXPECT_EQ(GetVendorId(L"X\\DISPLAY\\AAA0001\\DISPLAY\\BBB0002\\0"), L"DISPLAY\\AAA0001");
}

TEST(VendorId, PrefersTheMarkersInTheirOrderAndNotInThatOfTheId) {
    const std::vector<Marker> markers = Markers();
    for (std::size_t first = 0; first < markers.size(); ++first) {
        for (std::size_t second = first + 1; second < markers.size(); ++second) {
            const std::wstring preferred = PieceOf(markers[first]);
            const std::wstring other = PieceOf(markers[second]);
            EXPECT_EQ(GetVendorId(JoinPieces({other, preferred, L"0"})), preferred);
            EXPECT_EQ(GetVendorId(JoinPieces({preferred, other, L"0"})), preferred);
        }
    }
}

TEST(VendorId, FallsBackToALaterMarkerWhenAPieceDoesNotFit) {
    const std::vector<Marker> markers = Markers();
    for (std::size_t first = 0; first < markers.size(); ++first) {
        for (std::size_t second = first + 1; second < markers.size(); ++second) {
            const std::wstring other = PieceOf(markers[second]);
            EXPECT_EQ(GetVendorId(JoinPieces({other, PieceOf(markers[first])})), other);
        }
    }
}

TEST(VendorId, OfABluetoothIdIsThe21CharacterPieceAlthoughTheIdHasAUsbMarkerToo) {
    const std::wstring piece = L"VID&0002046D_PID&B01A";
    EXPECT_EQ(GetVendorId(L"VID_1111&PID_2222\\" + piece + L"\\"), piece);
    EXPECT_EQ(GetVendorId(L"VID_1111&PID_2222\\" + piece), L"VID_1111&PID_2222");
}

TEST(CutPiece, TakesAnyMarkerAndLength) {
    EXPECT_EQ(DeviceReporter::CutPiece(L"\\\\?\\DISPLAY#ABC1234#5&1", L"DISPLAY#", 15),
              L"DISPLAY#ABC1234");
    EXPECT_EQ(DeviceReporter::CutPiece(L"\\\\?\\DISPLAY#ABC1234", L"DISPLAY#", 15), L"");
}

}  // namespace
