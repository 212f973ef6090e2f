// The version functions of Windows as the optimisation report calls them.
#pragma once

#include <windows.h>

#include <string>

#include "simulation/import_redirection.h"
#include "support/timeline.h"

/// While it lives, the calls are noted by their names and answered from another file than the one
/// asked for. Arguments other than the expected ones are test failures. One at a time.
class VersionCalls {
public:
    /// `file` lies beside the test program.
    VersionCalls(test_support::Timeline& timeline, const std::wstring& file);

    /// The function of this name fails from now on.
    void Fail(const std::string& function);
    /// From now on GetFileVersionInfoSizeW answers with this number.
    void StateSize(DWORD size);

private:
    simulation::ImportRedirection redirection;
};
