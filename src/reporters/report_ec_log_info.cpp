#include "reporters/report_ec_log_info.h"

#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

#include "platform/wmi_kit.h"
#include "report/log_line.h"
#include "report/report_event.h"

namespace {

constexpr std::size_t kECLogSize = 253;

// The firmware reads and fills these records byte by byte.
static_assert(sizeof(VrSDK::WmiInputParams) == 64);
static_assert(offsetof(VrSDK::WmiInputParams, commandWord) == 0);
static_assert(offsetof(VrSDK::WmiInputParams, subCommand) == 2);
static_assert(sizeof(VrSDK::WmiOutputParams) == 256);
static_assert(offsetof(VrSDK::WmiOutputParams, status) == 0);
static_assert(offsetof(VrSDK::WmiOutputParams, dataSize) == 1);
static_assert(offsetof(VrSDK::WmiOutputParams, data) == 2);
static_assert(sizeof(VrSDK::WmiOutputParams::data) == kECLogSize);

constexpr std::int32_t kECLogEventId = 992614512;
constexpr std::uint16_t kReadECLogCommandWord = 0x0C06;
constexpr std::uint8_t kReadECLogSubCommand = 7;
constexpr char kReportECLogInfoFunction[] = "ReportECLogInfo";

/// "0x" and two lower-case digits for each byte, nothing in between.
std::string FormatHex(const std::uint8_t (&bytes)[kECLogSize]) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::hex << std::setfill('0');
    for (const unsigned byte : bytes) {
        text << "0x" << std::setw(2) << byte;
    }
    return text.str();
}

}  // namespace

void ReportECLogInfo() {
    VrSDK::WmiInputParams input{};
    input.commandWord = kReadECLogCommandWord;
    input.subCommand = kReadECLogSubCommand;
    VrSDK::WmiOutputParams output{};
    const int result = VrSDK::BiosWmi::GetBiosInfo(input, output);
    // The 8-bit numbers are widened: a stream writes a bare byte as a character.
    const unsigned status = output.status;
    const unsigned dataSize = output.dataSize;
    if (result != 0 || status != 0) {
        WriteLogLine(LOG_LEVEL_ERROR, kReportECLogInfoFunction, "ReadECLog error ret=", result,
                     ",status=", status);
        return;
    }
    WriteLogLine(LOG_LEVEL_NORMAL, kReportECLogInfoFunction, "EC log data size is ", dataSize);
    SendEvent(kECLogEventId, {{"ECLog", FormatHex(output.data)}});
}
