#include "device_reporter/device_text.h"

#include <cwchar>
#include <iterator>

#include "report/log_line.h"

namespace DeviceReporter {

namespace {

struct VendorPiece {
    const wchar_t* marker;
    std::size_t length;
};

// In order of preference: the first that yields a piece wins.
constexpr VendorPiece kVendorPieces[] = {
    {L"DISPLAY\\", 15},  // DISPLAY\ and a monitor id
    {L"VID&", 21},       // VID&0002xxxx_PID&xxxx, Bluetooth
    {L"VID_", 17},       // VID_xxxx&PID_xxxx, USB
    {L"VEN_", 17},       // VEN_xxxx&DEV_xxxx, PCI
};

}  // namespace

std::wstring AppendUnique(std::wstring existing, const std::wstring& added) {
    if (existing.empty()) {
        return added;
    }
    if (existing.find(added) == std::wstring::npos) {
        existing += L'\n';
        existing += added;
    }
    return existing;
}

std::wstring CutPiece(const std::wstring& text, const wchar_t* marker, std::size_t length) {
    const std::size_t position = text.find(marker);
    // Kept: a piece that ends with the text is not taken.
    if (position == std::wstring::npos || position + length >= text.size()) {
        return {};
    }
    return text.substr(position, length);
}

std::wstring GetVendorId(const std::wstring& instanceId) {
    for (const VendorPiece& piece : kVendorPieces) {
        std::wstring vendorId = CutPiece(instanceId, piece.marker, piece.length);
        if (!vendorId.empty()) {
            return vendorId;
        }
    }
    return {};
}

std::wstring GuidToString(const GUID& guid) {
    wchar_t text[64];
    const int length =
        swprintf_s(text, std::size(text), L"{%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                   guid.Data1, guid.Data2, guid.Data3, guid.Data4[0], guid.Data4[1], guid.Data4[2],
                   guid.Data4[3], guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]);
    if (length < 0) {
        WriteLogLine(LOG_LEVEL_NORMAL, "DeviceReporter::GuidToString", "GUID TO String failed");
        return {};
    }
    return text;
}

}  // namespace DeviceReporter
