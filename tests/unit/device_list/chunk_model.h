// What chunks have to look like, worked out without the product and without its JSON library.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "device_reporter/device_info.h"

namespace device_list_test {

/// The text's first 32 UTF-16 units up to a NUL, as UTF-8; half pairs become U+FFFD.
std::string ExpectedText(std::wstring_view text);

/// The chunks of a list.
std::vector<std::string> ExpectedChunks(const std::vector<DeviceReporter::DeviceInfo>& devices,
                                        bool withName);

}  // namespace device_list_test
