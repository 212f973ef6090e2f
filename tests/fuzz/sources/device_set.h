// A device set with random content that answers SetupAPI, the configuration manager and the HID
// library.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "fuzz/random.h"

namespace fuzz_sources {

inline constexpr std::size_t kIdCapacity = 260;
inline constexpr std::size_t kPropertyUnits = 2048;
inline constexpr std::size_t kHidCapacity = 260;
/// A device of this id is in the map before the fill.
inline constexpr wchar_t kKnownId[] = L"USB\\VID_1A3C&PID_0021\\KNOWN";

/// The strings are what is written to the caller's buffer: they may lack their terminator and fill
/// all that the caller has room for.
struct AnyHid {
    bool detailFails = false;
    std::size_t requiredSize = 0;  ///< In bytes, as the first of the two calls tells it.
    bool openFails = false;
    std::optional<std::wstring> product;
    std::optional<std::wstring> manufacturer;
};

struct AnyDevice {
    bool idFails = false;
    std::wstring id;
    bool statusFails = false;
    unsigned long status = 0;
    std::wstring friendlyName;  ///< Written without terminator; an empty one is not there.
    std::wstring manufacturer;
    std::vector<AnyHid> hidInterfaces;
};

struct AnyDeviceSet {
    bool byInterface = false;
    bool opensNot = false;
    std::vector<AnyDevice> devices;
};

void PrintTo(const AnyDeviceSet& set, std::ostream* stream);

AnyDeviceSet MakeDeviceSet(fuzz::Random& random);

/// While it lives, the program's calls see this set. One at a time.
class DeviceSetInForce {
public:
    explicit DeviceSetInForce(const AnyDeviceSet& set);
    ~DeviceSetInForce();
    DeviceSetInForce(const DeviceSetInForce&) = delete;
    DeviceSetInForce& operator=(const DeviceSetInForce&) = delete;

    /// Device sets and files that were opened and not closed.
    int OpenHandles() const;
};

}  // namespace fuzz_sources
