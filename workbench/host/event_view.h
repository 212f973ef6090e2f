// Events as people like to read them.
#pragma once

#include "host/sent_event.h"
#include "host/text_table.h"

namespace host {

/// The event's fields: a table of keys and values, the embedded controller's log as a dump, the
/// chunks of a device list by the number of their devices.
TextLines DescribeEvent(const SentEvent& event);

}  // namespace host
