// WmiKit.dll: the firmware's WMI interface.
#pragma once

#include <cstdint>

#if defined(WMI_KIT_EXPORTS)
#define WMI_KIT_API __declspec(dllexport)
#else
#define WMI_KIT_API __declspec(dllimport)
#endif

namespace VrSDK {

/// Request to the firmware. Unused bytes are zero.
struct WmiInputParams {
    std::uint16_t commandWord;
    std::uint8_t subCommand;
    std::uint8_t reserved[61];
};

/// The firmware's answer.
struct WmiOutputParams {
    std::uint8_t status;    ///< 0 on success.
    std::uint8_t dataSize;  ///< Meaningful bytes of `data`, as the firmware states it.
    std::uint8_t data[253];
    std::uint8_t reserved;
};

/// Requests that the firmware answers through WMI.
class BiosWmi {
public:
    /// Returns 0 when the request reached the firmware; `output.status` then holds the firmware's
    /// own result. Safe to call from several threads at once.
    WMI_KIT_API static int GetBiosInfo(WmiInputParams& input, WmiOutputParams& output);
};

/// Called on a thread of the library, possibly on several at once.
using BiosEventCallback = void (*)(unsigned int eventCode);

/// Subscription to the events that the firmware raises.
class BiosEventMonitor {
public:
    WMI_KIT_API BiosEventMonitor();
    WMI_KIT_API ~BiosEventMonitor();
    BiosEventMonitor(const BiosEventMonitor&) = delete;
    BiosEventMonitor& operator=(const BiosEventMonitor&) = delete;

    /// Returns 0 when events will be delivered to `callback`.
    WMI_KIT_API int StartEventMonitor(BiosEventCallback callback);
    /// After the return no further event is delivered.
    WMI_KIT_API int StopEventMonitor();

private:
    BiosEventCallback subscriber = nullptr;
};

}  // namespace VrSDK
