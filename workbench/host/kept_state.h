// What the plug-in and the optimisation component keep in the registry.
#pragma once

namespace host {

/// The plug-in's own values, under HKEY_LOCAL_MACHINE.
inline constexpr wchar_t kKeptStateKey[] = L"SOFTWARE\\Orbisuite\\DataReportTime";
inline constexpr wchar_t kBiosReportTime[] = L"BiosReportTime";
inline constexpr wchar_t kReportDevicesCount[] = L"ReportDevicesCount";

/// Device lists that the plug-in sends on one machine, ever.
inline constexpr int kMostDeviceLists = 10;

/// The component's switches, under HKEY_USERS, behind the user's SID.
inline constexpr wchar_t kSwitchKeySuffix[] = L"\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
inline constexpr wchar_t kPopUpBlockingStatus[] = L"PopUpBlockingStatus";
inline constexpr wchar_t kPowerfulModeStatus[] = L"PowerfulModeStatus";

/// The component's executable, whose version is reported.
inline constexpr wchar_t kComponentFolder[] =
    L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost";
inline constexpr wchar_t kComponentFileName[] = L"TuneBoostCenter.exe";

}  // namespace host
