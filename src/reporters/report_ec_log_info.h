// The embedded controller's log report.
#pragma once

/// Reads the embedded controller's log from the firmware and sends it as event 992614512: all 253
/// bytes as hexadecimal text, however many of them the firmware calls meaningful. A failed read is
/// logged and sends nothing.
///
/// Runs on the thread on which the firmware's event is delivered, possibly on several at once; it
/// shares no state.
void ReportECLogInfo();
