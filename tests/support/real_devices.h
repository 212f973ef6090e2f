// The devices of the system that the tests run on.
#pragma once

namespace test_support {

/// Waits until the system has what tests ask it for: two HID devices that can be opened, as Wine's
/// mouse and keyboard, and a display. Wine makes them after its start, at its leisure. Waits once
/// in a process. Throws std::runtime_error naming what is missing in the end.
void WaitForRealDevices();

}  // namespace test_support
