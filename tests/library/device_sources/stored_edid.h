// An EDID that a test gives to a monitor of the machine it runs on.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace real_devices {

/// While it lives, the registry has this EDID for the monitor; afterwards what was there before.
/// Throws std::runtime_error when the registry refuses.
class StoredEdid {
public:
    /// `deviceId` is the monitor's instance id.
    StoredEdid(const std::wstring& deviceId, const std::vector<BYTE>& edid);
    ~StoredEdid();
    StoredEdid(const StoredEdid&) = delete;
    StoredEdid& operator=(const StoredEdid&) = delete;

private:
    std::wstring key;
    std::optional<std::vector<BYTE>> before;
};

}  // namespace real_devices
