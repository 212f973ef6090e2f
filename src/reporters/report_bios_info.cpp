#include "reporters/report_bios_info.h"

#include <windows.h>

#include <cstdint>
#include <ctime>

#include "platform/board_info.h"
#include "platform/file_kit.h"
#include "report/data_report_time.h"
#include "report/log_line.h"
#include "report/report_event.h"
#include "util/string_convert.h"

namespace {

constexpr std::int32_t kBiosInfoEventId = 992614500;
constexpr std::int64_t kMinSecondsBetweenReports = std::int64_t{72} * 3600;
constexpr wchar_t kLastReportValueName[] = L"BiosReportTime";

}  // namespace

void ReportBiosInfo::OnRecvReportInfo() const {
    const std::int64_t now = std::time(nullptr);
    std::int64_t last = 0;
    // The result is dropped: a stamp that is missing or unreadable counts as "never reported".
    QD::Registry::GetValue(HKEY_LOCAL_MACHINE, kDataReportTimeKey, kLastReportValueName, last,
                           KEY_ALL_ACCESS);
    // Written so that no stamp, however odd, overflows. One in the future suppresses reports too.
    if (last > now - kMinSecondsBetweenReports) {
        return;
    }
    SmBiosHelper* const smBios = SmBiosHelper::GetInstance();
    if (smBios == nullptr) {
        WriteLogLine(LOG_LEVEL_ERROR, "ReportBiosInfo::OnRecvReportInfo",
                     "SmBiosHelper is nullptr");
        return;
    }
    // An initialiser list is evaluated in order: the firmware is asked in the order of the fields.
    SendEvent(kBiosInfoEventId, {{"Product", WStringToString(smBios->GetBoardProductName())},
                                 {"String7", WStringToString(smBios->GetOemProductName())},
                                 {"Version", WStringToString(smBios->GetBIOSSysVersion())}});
    // Only what was sent is stamped, with the time that the run began. The result is dropped:
    // without the stamp, the next run reports again.
    QD::Registry::SetValue(HKEY_LOCAL_MACHINE, kDataReportTimeKey, kLastReportValueName, now,
                           KEY_ALL_ACCESS);
}
