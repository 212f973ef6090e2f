// The optimisation component's state report.
#pragma once

#include <string>

/// Sends event 992614518: whether the console user has pop-up blocking or the performance mode of
/// the suite's optimisation component switched on, and the component's product version.
///
/// Reads the user's hive under HKEY_USERS and the version resource of the component's executable.
/// Keeps no state between runs. Runs on the host's thread inside Start and on the timer loop thread
/// afterwards.
class ReportPopUpBlockInfo {
public:
    /// Sends the report. Without the component's key it does nothing; an unreadable switch is
    /// logged and nothing is sent.
    void OnRecvReportInfo() const;

    /// Product version of the component's executable as four decimal numbers joined by dots; empty
    /// when it cannot be read.
    static std::string GetAppVersion();
};
