#include "device_reporter/printer_info.h"

#include <winspool.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "device_reporter/device_text.h"
#include "device_reporter/scoped_device_handles.h"
#include "device_reporter/spooler_query.h"
#include "report/log_line.h"

namespace DeviceReporter {

namespace {

static_assert(sizeof(PRINTER_INFO_2W) == 136);
static_assert(sizeof(DRIVER_INFO_6W) == 136);

constexpr SpoolerQueryTexts kListTexts = {"DeviceReporter::EnumPrinterList",
                                          "EnumPrinters fail 2, lastError="};
constexpr SpoolerQueryTexts kDriverTexts = {"DeviceReporter::GetPrinterDriverInfo",
                                            "GetPrinterDriver fail 2, lastError="};
constexpr char kParsePrintersFunction[] = "DeviceReporter::ParsePrinters";
constexpr char kUpdatePrinterDriverInfoFunction[] = "DeviceReporter::UpdatePrinterDriverInfo";
constexpr std::size_t kMaxIdPartLength = 8;

/// The first characters of a text that may be null.
std::wstring CutIdPart(const wchar_t* text) {
    return text == nullptr ? std::wstring() : std::wstring(text).substr(0, kMaxIdPartLength);
}

DeviceInfo MakePrinterRecord(const PRINTER_INFO_2W& printer) {
    DeviceInfo record;
    record.instanceId = printer.pPrinterName;
    record.name = printer.pPrinterName;
    record.description = printer.pDriverName;
    record.className = L"Printer";
    // A queue has no vendor id; its data type and port take that place.
    record.vendorId = AppendUnique(CutIdPart(printer.pDatatype), CutIdPart(printer.pPortName));
    return record;
}

}  // namespace

bool EnumPrinterList(std::unique_ptr<BYTE[]>& printerInfoList, DWORD& count) {
    count = 0;
    DWORD returned = 0;
    const auto enumPrinters = [&returned](BYTE* block, DWORD size, DWORD& needed) {
        return EnumPrintersW(PRINTER_ENUM_LOCAL, /*Name=*/nullptr, /*Level=*/2, block, size,
                             &needed, &returned);
    };
    DWORD filled = 0;
    const auto askSize = [&enumPrinters](DWORD& needed) {
        return enumPrinters(/*block=*/nullptr, /*size=*/0, needed);
    };
    const auto fetch = [&enumPrinters, &filled](BYTE* block, DWORD size) {
        // Kept: the first call's size counts where the second call sets none.
        filled = size;
        return enumPrinters(block, size, filled);
    };
    DWORD blockSize = 0;
    if (!RunSpoolerQuery(kListTexts, askSize, fetch, printerInfoList, blockSize)) {
        return false;
    }
    if (!printerInfoList) {
        return true;
    }
    // A spooler may report a size beyond that of the block.
    if (std::min(blockSize, filled) < std::uint64_t{returned} * sizeof(PRINTER_INFO_2W)) {
        WriteLogLine(LOG_LEVEL_NORMAL, kListTexts.functionName,
                     "printer list data error, dwReturned=", returned, ", dwNeeded=", filled);
        return false;
    }
    count = returned;
    return true;
}

bool ParsePrinters(const BYTE* printerInfoList, DWORD count, std::vector<DeviceInfo>& printers) {
    if (printerInfoList == nullptr) {
        WriteLogLine(LOG_LEVEL_NORMAL, kParsePrintersFunction, "printerInfoList is null");
        return false;
    }
    const auto* const entries = reinterpret_cast<const PRINTER_INFO_2W*>(printerInfoList);
    for (DWORD i = 0; i < count; ++i) {
        const PRINTER_INFO_2W& printer = entries[i];
        if (printer.pDriverName == nullptr || printer.pPrinterName == nullptr) {
            WriteLogLine(LOG_LEVEL_NORMAL, kParsePrintersFunction,
                         "driver name or printer name is empty");
            continue;
        }
        DeviceInfo record = MakePrinterRecord(printer);
        // The result is dropped: a queue without driver information is reported all the same.
        UpdatePrinterDriverInfo(printer.pPrinterName, record);
        printers.push_back(std::move(record));
    }
    return true;
}

std::vector<DeviceInfo> ListPrinters() {
    std::vector<DeviceInfo> printers;
    std::unique_ptr<BYTE[]> printerInfoList;
    DWORD count = 0;
    if (EnumPrinterList(printerInfoList, count)) {
        // The result is dropped: without a list, which is logged, there are no records.
        ParsePrinters(printerInfoList.get(), count, printers);
    }
    return printers;
}

bool UpdatePrinterDriverInfo(const std::wstring& printerName, DeviceInfo& record) {
    HANDLE opened = nullptr;
    // The parameter is not const, but the name is only read.
    if (!OpenPrinterW(const_cast<wchar_t*>(printerName.c_str()), &opened, /*pDefault=*/nullptr)) {
        WriteLogLine(LOG_LEVEL_NORMAL, kUpdatePrinterDriverInfoFunction, "fail to open printer");
        return false;
    }
    const ScopedPrinter printer(opened);
    std::unique_ptr<BYTE[]> driverInfo;
    if (!GetPrinterDriverInfo(printer.Get(), driverInfo)) {
        WriteLogLine(LOG_LEVEL_NORMAL, kUpdatePrinterDriverInfoFunction,
                     "fail to get printer driver info");
        return false;
    }
    if (!driverInfo) {
        WriteLogLine(LOG_LEVEL_NORMAL, kUpdatePrinterDriverInfoFunction, "driverInfo is null");
        return false;
    }
    const auto& driver = *reinterpret_cast<const DRIVER_INFO_6W*>(driverInfo.get());
    if (driver.pszHardwareID != nullptr) {
        record.containerId = driver.pszHardwareID;
    }
    if (driver.pszMfgName != nullptr) {
        record.manufacturer = driver.pszMfgName;
    }
    return true;
}

bool GetPrinterDriverInfo(HANDLE printer, std::unique_ptr<BYTE[]>& driverInfo) {
    const auto askSize = [printer](DWORD& needed) {
        return GetPrinterDriverW(printer, /*pEnvironment=*/nullptr, /*Level=*/6,
                                 /*pDriverInfo=*/nullptr, /*cbBuf=*/0, &needed);
    };
    DWORD filled = 0;
    const auto fetch = [printer, &filled](BYTE* block, DWORD size) {
        return GetPrinterDriverW(printer, /*pEnvironment=*/nullptr, /*Level=*/6, block, size,
                                 &filled);
    };
    DWORD blockSize = 0;
    if (!RunSpoolerQuery(kDriverTexts, askSize, fetch, driverInfo, blockSize)) {
        return false;
    }
    // Kept: unlike in the list, a size that the second call does not set counts as 0. A size beyond
    // the block is not believed.
    if (driverInfo && std::min(blockSize, filled) < sizeof(DRIVER_INFO_6W)) {
        WriteLogLine(LOG_LEVEL_NORMAL, kDriverTexts.functionName,
                     "printer driver data error, dwReturned=", filled, ", dwNeeded=", blockSize);
        return false;
    }
    return true;
}

}  // namespace DeviceReporter
