// The events of one device list, byte for byte.
#pragma once

#include <vector>

#include "accelerated/story/device_record.h"
#include "accelerated/story/sent_event.h"

namespace story {

std::vector<SentEvent> DeviceListEvents(const DeviceRecords& inventory,
                                        const std::vector<DeviceRecord>& printers,
                                        const std::vector<DeviceRecord>& displays);

}  // namespace story
