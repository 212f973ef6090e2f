// Removable devices that come and go, by number.
#pragma once

#include <string>

#include "simulation/machine.h"

namespace reliability_test {

/// They have numbers below this.
inline constexpr unsigned kVisitors = 12;

/// The piece of its id by which a device list names it.
std::string VisitorText(unsigned visitor);

/// Its instance id.
std::wstring VisitorId(unsigned visitor);

/// The device, in a container of its own.
simulation::Device Visitor(unsigned visitor);

}  // namespace reliability_test
