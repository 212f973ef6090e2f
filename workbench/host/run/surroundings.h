// What the plug-in runs in: this computer, or a machine out of a file.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "host/options/options.h"
#include "host/run/script.h"
#include "host/run/suite.h"
#include "host/views/screen.h"

namespace host {

// What the plug-in and the optimisation component keep in the registry.

/// The plug-in's own values, under HKEY_LOCAL_MACHINE.
inline constexpr wchar_t kKeptStateKey[] = L"SOFTWARE\\Orbisuite\\DataReportTime";
inline constexpr wchar_t kBiosReportTime[] = L"BiosReportTime";
inline constexpr wchar_t kReportDevicesCount[] = L"ReportDevicesCount";

/// Device lists that the plug-in sends on one machine, ever.
inline constexpr int kMostDeviceLists = 10;

/// The component's switches, under HKEY_USERS, behind the user's SID.
inline constexpr wchar_t kSwitchKeySuffix[] = L"\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
inline constexpr wchar_t kPopUpBlockingStatus[] = L"PopUpBlockingStatus";
inline constexpr wchar_t kPowerfulModeStatus[] = L"PowerfulModeStatus";

/// The component's executable, whose version is reported.
inline constexpr wchar_t kComponentFolder[] =
    L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost";
inline constexpr wchar_t kComponentFileName[] = L"TuneBoostCenter.exe";

/// The part of a run that differs between a real and a simulated machine. One thread.
class Surroundings {
public:
    virtual ~Surroundings() = default;

    /// "this computer (Wine 8.0)".
    virtual std::string Describe() const = 0;

    /// Throws BadInput when a happening is impossible here. Called for the whole script before
    /// anything starts.
    virtual void Check(const Happening& happening) const = 0;

    /// Once, before the plug-in is loaded for the first time.
    virtual void Prepare() = 0;

    /// Right after the plug-in was loaded, each time.
    virtual void Enter(HMODULE plugin) = 0;
    /// Right before it is unloaded. No thread of the plug-in runs any more.
    virtual void Leave() = 0;

    /// The plug-in's own count of the device lists that it ever sent; 0 while it keeps none.
    virtual int DeviceListsSent() const = 0;

    virtual void Perform(const SetSwitch& action) = 0;
    virtual void Perform(const PlugDevice& action) = 0;
};

/// The machine of the file that --machine names, else this computer. `suite` and `screen` must
/// outlive the result. Throws BadInput.
std::unique_ptr<Surroundings> MakeSurroundings(const Options& options, const Suite& suite,
                                               Screen& screen);

}  // namespace host
