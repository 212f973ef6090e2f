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

/// Appends a record for each queue that has a name and a driver name. False, with a log line, when
/// there is no list.
bool ParsePrinters(const BYTE* printerInfoList, DWORD count, std::vector<DeviceInfo>& printers);

/// The records of all local queues; none when they cannot be listed. Monitor thread only.
std::vector<DeviceInfo> ListPrinters();

/// Completes a queue's record with its driver's maker and hardware id. False, with a log line, when
/// the queue cannot be opened or its driver is not known.
bool UpdatePrinterDriverInfo(const std::wstring& printerName, DeviceInfo& record);

/// Reads the driver of an open queue: a DRIVER_INFO_6W and its strings in one block. False, with a
/// log line, on failure.
bool GetPrinterDriverInfo(HANDLE printer, std::unique_ptr<BYTE[]>& driverInfo);

}  // namespace DeviceReporter
