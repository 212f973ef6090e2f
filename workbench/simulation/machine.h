// The model of a machine: everything that the simulated system answers from. Plain values; a
// default Machine is a valid, empty one.
#pragma once

#include <windows.h>
#include <wtsapi32.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulation/device_property.h"
#include "simulation/lies.h"

namespace simulation {

/// What the HID class driver says when an interface path is opened and asked. A text that is
/// absent makes its query fail.
struct HidAnswers {
    DWORD openError = ERROR_SUCCESS;  ///< Anything else: the path cannot be opened.
    std::optional<std::wstring> product;
    std::optional<std::wstring> manufacturer;
};

/// A device interface. Only paths that have HID answers can be opened.
struct DeviceInterface {
    GUID interfaceClass{};
    std::wstring path;
    std::optional<HidAnswers> hid;
};

inline constexpr ULONG kDeviceStarted = 0x0180200A;    ///< DN_STARTED and its usual companions.
inline constexpr ULONG kDeviceRemovable = 0x00004000;  ///< DN_REMOVABLE

/// A Plug and Play device node.
struct Device {
    std::wstring instanceId;
    bool present = true;
    ULONG status = kDeviceStarted;  ///< DN_... bits.
    ULONG problem = 0;              ///< CM_PROB_...
    DWORD statusResult = 0;         ///< CR_... that the status query returns.
    std::vector<DeviceProperty> properties;
    std::vector<DeviceInterface> interfaces;

    void SetRemovable(bool removable) {
        status = removable ? status | kDeviceRemovable : status & ~kDeviceRemovable;
    }
};

/// The parts of a printer driver's description that its maker may leave out.
struct PrinterDriver {
    std::optional<std::wstring> manufacturer;
    std::optional<std::wstring> hardwareId;
};

/// A print queue. An absent text is a null pointer in the spooler's answer; a queue without driver
/// fails the driver query.
struct Printer {
    std::optional<std::wstring> name;
    std::optional<std::wstring> driverName;
    std::optional<std::wstring> dataType;
    std::optional<std::wstring> portName;
    std::optional<PrinterDriver> driver;
};

struct DisplayMode {
    DWORD width = 1920;
    DWORD height = 1080;
    DWORD frequency = 60;  ///< Hz
    DWORD logPixels = 96;
    DWORD bitsPerPixel = 32;
};

/// An active path from a source (a part of the desktop) to a target (a monitor).
struct DisplayPath {
    LUID sourceAdapter{};
    LUID targetAdapter{};
    UINT32 sourceId = 0;
    UINT32 targetId = 0;
    std::wstring gdiName;  ///< "\\.\DISPLAY1"
    std::wstring friendlyName;
    std::wstring devicePath;                ///< "\\?\DISPLAY#ABC1234#...#{...}"
    std::optional<std::vector<BYTE>> edid;  ///< Absent: the registry has no such value.
    std::optional<DisplayMode> mode = DisplayMode{};
};

struct Display {
    UINT32 topology = 1;  ///< DISPLAYCONFIG_TOPOLOGY_...
    std::vector<DisplayPath> paths;
};

struct Session {
    DWORD id = 0;
    WTS_CONNECTSTATE_CLASS state = WTSActive;
    std::wstring userName;             ///< DOMAIN\user; empty when nobody is logged on.
    DWORD tokenError = ERROR_SUCCESS;  ///< Anything else: the user's token is refused.
};

inline constexpr DWORD kNoConsoleSession = 0xFFFFFFFF;

/// Who is logged on, and as whom the plug-in's host runs.
struct Logons {
    DWORD consoleSession = kNoConsoleSession;
    std::vector<Session> sessions;
    std::wstring hostAccount = L"NT AUTHORITY\\SYSTEM";  ///< Empty: the name cannot be read.
    std::map<std::wstring, std::wstring> accounts{       ///< Account name to SID text.
                                                  {L"NT AUTHORITY\\SYSTEM", L"S-1-5-18"}};
};

/// Texts of the SMBIOS table.
struct Firmware {
    std::wstring boardProduct;
    std::wstring oemProduct;
    std::wstring biosVersion;
};

/// The firmware's answer to the request for the embedded controller's log.
struct EcLogAnswer {
    int callResult = 0;  ///< 0 when the request reaches the firmware.
    std::uint8_t status = 0;
    std::uint8_t dataSize = 0;
    std::vector<std::uint8_t> data;  ///< At most 253 bytes; the rest reads as zero.
};

/// What the suite's own libraries know.
struct Suite {
    std::string consent = "1";
    std::map<std::string, int> features;
    /// Properties that the shelf supports, name to value; absent: the shelf is not installed.
    std::optional<std::multimap<std::string, std::string>> shelf;
    EcLogAnswer ecLog;
    int firmwareStartResult = 0;  ///< 0 when firmware events can be subscribed to.
};

/// Registry values that exist before the plug-in runs.
struct RegistryPreset {
    std::optional<std::int64_t> biosReportTime;  ///< Unix seconds.
    std::optional<std::int32_t> reportDevicesCount;
    std::optional<std::int32_t> popUpBlocking;  ///< In the console user's hive.
    std::optional<std::int32_t> powerfulMode;   ///< In the console user's hive.
};

/// Numbers of a version resource, most significant first.
struct FileVersion {
    std::array<WORD, 4> file{};
    std::array<WORD, 4> product{};
};

struct Machine {
    std::string description;
    std::vector<Device> devices;
    std::vector<Printer> printers;
    Display display;
    Logons logons;
    std::optional<Firmware> firmware = Firmware{};  ///< Absent: there is no SMBIOS table.
    Suite suite;
    RegistryPreset registry;
    std::map<std::wstring, FileVersion> fileVersions;  ///< By full path.

    // No machine file has these.

    /// Where the steady clock stands when the simulation begins; absent: it is the real one.
    std::optional<std::int64_t> steadyNanoseconds;
    Lies lies;
};

}  // namespace simulation
