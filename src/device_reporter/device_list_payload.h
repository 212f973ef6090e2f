// The device list as it leaves the machine.
#pragma once

namespace DeviceReporter {

class ReportDeviceInfo;

/// Builds the five lists from the reporter's device map, the printers and the displays, and sends
/// them as events 992614533: event i carries the i-th chunk of every list that has one. Sends
/// nothing when all lists are empty. Monitor thread only.
void SendDeviceList(const ReportDeviceInfo& reporter);

}  // namespace DeviceReporter
