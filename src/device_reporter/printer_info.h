// The local print queues.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// Lists the local queues: `count` PRINTER_INFO_2W entries and their strings in one block, which
/// the caller owns, also after a failure. No block when there is no printer. False, with a log
/// line, on failure. Asks the print spooler. Monitor thread only.
bool EnumPrinterList(std::unique_ptr<BYTE[]>& printerInfoList, DWORD& count);

/// Appends a record, completed from its driver where that is known, for each queue with a name and
/// a driver name; others are logged and skipped. False, with a log line, when there is no list.
/// Monitor thread only.
bool ParsePrinters(const BYTE* printerInfoList, DWORD count, std::vector<DeviceInfo>& printers);

/// The records of all local queues; none when they cannot be listed. Monitor thread only.
std::vector<DeviceInfo> ListPrinters();

/// Completes a queue's record with its driver's maker and hardware id. False, with a log line, when
/// the queue cannot be opened or its driver is not known. Monitor thread only.
bool UpdatePrinterDriverInfo(const std::wstring& printerName, DeviceInfo& record);

/// Reads the driver of an open queue: a DRIVER_INFO_6W and its strings in one block, which the
/// caller owns, also after a failure. True with no block when the spooler has nothing to give.
/// False, with a log line, on failure. Monitor thread only.
bool GetPrinterDriverInfo(HANDLE printer, std::unique_ptr<BYTE[]>& driverInfo);

}  // namespace DeviceReporter
