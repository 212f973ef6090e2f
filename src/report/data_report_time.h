// The registry key under HKEY_LOCAL_MACHINE in which reporters keep their state. Each reporter has
// a value of its own there and touches no other.
#pragma once

inline constexpr wchar_t kDataReportTimeKey[] = L"SOFTWARE\\Orbisuite\\DataReportTime";
