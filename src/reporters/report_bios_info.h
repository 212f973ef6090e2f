// The BIOS and board identification report.
#pragma once

/// Sends event 992614500 with the board's product name, the OEM product name and the BIOS version,
/// at most once every 72 hours, across restarts of the host.
///
/// The time of the last report is kept in the registry, so the object has no state. Runs on the
/// host's thread inside Start and on the timer loop thread afterwards.
class ReportBiosInfo {
public:
    /// Sends the report when it is due; a missing text is sent empty. Without an SMBIOS table it
    /// logs that, sends nothing and leaves the stamp.
    void OnRecvReportInfo() const;
};
