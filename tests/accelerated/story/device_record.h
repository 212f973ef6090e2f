// What the inventory keeps of a device, a printer or a display.
#pragma once

#include <map>
#include <string>

namespace story {

struct DeviceRecord {
    bool isRemovable = false;
    std::wstring id;
    std::wstring name;
    std::wstring maker;
    std::wstring className;
    std::wstring description;
    std::wstring device;  ///< Vendor and product.
    std::wstring container;
};

/// By id in capital letters.
using DeviceRecords = std::map<std::wstring, DeviceRecord>;

}  // namespace story
