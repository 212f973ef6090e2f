#include "device_reporter/edid_registry.h"

#include <windows.h>

#include <cstddef>
#include <memory>
#include <new>

#include "device_reporter/edid.h"
#include "report/log_line.h"
#include "util/scoped_registry_key.h"
#include "util/string_convert.h"

namespace DeviceReporter {

namespace {

constexpr char kGetEditRegPathFunction[] = "`anonymous-namespace'::GetEditRegPath";
constexpr char kGetValueFromRegFunction[] = "`anonymous-namespace'::GetValueFromReg";
constexpr char kGetDataFromRegFunction[] = "`anonymous-namespace'::GetDataFromReg";

}  // namespace

// Kept: "Edit" for EDID, because log lines carry the name.
std::wstring GetEditRegPath(const std::wstring& monitorDevicePath) {
    // \\?\DISPLAY#model#instance#{interface class}: the first three pieces name the device.
    constexpr int kPieceCount = 3;
    std::size_t pieceBegin = monitorDevicePath.find(L"DISPLAY");
    if (pieceBegin == std::wstring::npos) {
        WriteLogLine(LOG_LEVEL_NORMAL, kGetEditRegPathFunction, "devicePath is error!");
        return {};
    }
    std::wstring regPath = L"SYSTEM\\CurrentControlSet\\Enum\\";
    for (int i = 0; i < kPieceCount; ++i) {
        const std::size_t pieceEnd = monitorDevicePath.find(L'#', pieceBegin);
        if (pieceEnd == std::wstring::npos) {
            WriteLogLine(LOG_LEVEL_NORMAL, kGetEditRegPathFunction, "devicePath format is error!");
            return {};
        }
        regPath.append(monitorDevicePath, pieceBegin, pieceEnd - pieceBegin);
        regPath += L'\\';
        pieceBegin = pieceEnd + 1;
    }
    return regPath + L"Device Parameters";
}

bool GetValueFromReg(const std::wstring& regPath, std::string& edid) {
    const std::string edidFullPath = WStringToString(regPath);
    if (edidFullPath.empty()) {
        WriteLogLine(LOG_LEVEL_NORMAL, kGetValueFromRegFunction, "edidFullPath is empty!");
        return false;
    }
    HKEY opened = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, edidFullPath.c_str(), /*ulOptions=*/0, KEY_READ,
                      &opened) != ERROR_SUCCESS) {
        WriteLogLine(LOG_LEVEL_NORMAL, kGetValueFromRegFunction,
                     "RegOpenKeyExA Failed! edidFullPath:", regPath);
        return false;
    }
    // Outlives the key, which is closed first.
    std::unique_ptr<BYTE[]> outValue;
    ScopedRegistryKey key(opened);
    DWORD type = REG_BINARY;
    DWORD size = 0;
    const LSTATUS sizeResult = RegQueryValueExA(key.Get(), "EDID", /*lpReserved=*/nullptr, &type,
                                                /*lpData=*/nullptr, &size);
    if (sizeResult != ERROR_SUCCESS || size == 0) {
        key.Reset();
        WriteLogLine(LOG_LEVEL_NORMAL, kGetValueFromRegFunction,
                     "RegQuery max Edid value length Failed, maxValueLength is ", size);
        return false;
    }
    outValue.reset(new (std::nothrow) BYTE[size]());
    if (!outValue) {
        key.Reset();
        WriteLogLine(LOG_LEVEL_NORMAL, kGetValueFromRegFunction, "outValue is nullptr!");
        return false;
    }
    // Kept: this failure has no line of its own, only the caller's.
    if (RegQueryValueExA(key.Get(), "EDID", /*lpReserved=*/nullptr, &type, outValue.get(), &size) !=
        ERROR_SUCCESS) {
        return false;
    }
    edid.assign(reinterpret_cast<const char*>(outValue.get()), size);
    return true;
}

bool GetDataFromReg(const std::wstring& regPath, std::vector<std::wstring>& data) {
    std::string edid;
    if (!GetValueFromReg(regPath, edid) || edid.empty()) {
        WriteLogLine(LOG_LEVEL_NORMAL, kGetDataFromRegFunction, "GetValueFromReg failed!");
        return false;
    }
    if (!PushEdidToData(data, edid)) {
        WriteLogLine(LOG_LEVEL_NORMAL, kGetDataFromRegFunction, "PushEdidToData failed!");
        return false;
    }
    return true;
}

}  // namespace DeviceReporter
