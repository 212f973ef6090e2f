#include "reporters/report_popup_block_info.h"

#include <windows.h>

#include <cstdint>
#include <memory>
#include <new>

#include "platform/file_kit.h"
#include "platform/xeevent.h"
#include "report/log_line.h"
#include "util/console_user.h"

namespace {

constexpr std::int32_t kPopUpBlockInfoEventId = 992614518;
constexpr wchar_t kTuneBoostKeySuffix[] = L"\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
constexpr wchar_t kTuneBoostExecutable[] =
    L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\TuneBoostCenter.exe";
constexpr std::int32_t kUnknown = -1;
constexpr std::int32_t kOn = 1;

/// "major.minor.build.revision" of the product version; the file version may differ from it.
std::string FormatProductVersion(const VS_FIXEDFILEINFO& info) {
    return std::to_string(HIWORD(info.dwProductVersionMS)) + "." +
           std::to_string(LOWORD(info.dwProductVersionMS)) + "." +
           std::to_string(HIWORD(info.dwProductVersionLS)) + "." +
           std::to_string(LOWORD(info.dwProductVersionLS));
}

}  // namespace

void ReportPopUpBlockInfo::OnRecvReportInfo() const {
    constexpr char kOnRecvReportInfoFunction[] = "ReportPopUpBlockInfo::OnRecvReportInfo";
    QD::Registry registry;
    registry.SetRootKey(HKEY_USERS);
    const std::wstring key = GetActiveUserSid() + kTuneBoostKeySuffix;
    if (!registry.KeyExists(key)) {
        return;
    }
    // The names outlive both reads: giving their memory back might change the error number that a
    // failed read leaves.
    const std::wstring popUpBlockingName = L"PopUpBlockingStatus";
    const std::wstring powerfulModeName = L"PowerfulModeStatus";
    // Kept: full access is asked for although the switches are only read, so a user's key that
    // grants less counts as unreadable.
    std::int32_t popUpBlockingStatus = kUnknown;
    if (!QD::Registry::GetValue(HKEY_USERS, key, popUpBlockingName, popUpBlockingStatus,
                                KEY_ALL_ACCESS)) {
        const DWORD error = GetLastError();
        WriteLogLine(LOG_LEVEL_ERROR, kOnRecvReportInfoFunction,
                     "Get register blocking switch fail: ", error);
        return;
    }
    std::int32_t powerfulModeStatus = kUnknown;
    if (!QD::Registry::GetValue(HKEY_USERS, key, powerfulModeName, powerfulModeStatus,
                                KEY_ALL_ACCESS)) {
        const DWORD error = GetLastError();
        WriteLogLine(LOG_LEVEL_ERROR, kOnRecvReportInfoFunction,
                     "Get register power switch fail: ", error);
        return;
    }
    const bool isOn = popUpBlockingStatus == kOn || powerfulModeStatus == kOn;
    const std::string version = GetAppVersion();

    XeEvent event(kPopUpBlockInfoEventId);
    // Kept: the event is assigned what PutString returns, as the library's users chain calls. That
    // is the event itself, so the assignments leave it as it is.
    event = event.PutString("mode", "OPEN_MODE");
    event = event.PutString("status", isOn ? "1" : "0");
    event = event.PutString("version", version);
    XeView::Report(event);
}

std::string ReportPopUpBlockInfo::GetAppVersion() {
    const DWORD size = GetFileVersionInfoSizeW(kTuneBoostExecutable, /*lpdwHandle=*/nullptr);
    if (size == 0) {
        return {};
    }
    const std::unique_ptr<BYTE[]> infoData(new (std::nothrow) BYTE[size]);
    if (!infoData) {
        WriteLogLine(LOG_LEVEL_ERROR, "ReportPopUpBlockInfo::GetAppVersion", "infoData null");
        return {};
    }
    if (!GetFileVersionInfoW(kTuneBoostExecutable, /*dwHandle=*/0, size, infoData.get())) {
        return {};
    }
    void* fixedInfo = nullptr;
    UINT fixedInfoSize = 0;
    // A resource without the fixed record is answered with success and a length of zero.
    if (!VerQueryValueW(infoData.get(), L"\\", &fixedInfo, &fixedInfoSize) ||
        fixedInfoSize < sizeof(VS_FIXEDFILEINFO)) {
        return {};
    }
    return FormatProductVersion(*static_cast<const VS_FIXEDFILEINFO*>(fixedInfo));
}
