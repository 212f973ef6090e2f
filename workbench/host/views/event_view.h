// Events as people like to read them.
#pragma once

#include <chrono>
#include <map>

#include "common/text_table.h"
#include "records/record.h"

namespace host {

/// The event's fields: a table of keys and values, the embedded controller's log as a dump, the
/// chunks of a device list by the number of their devices.
workbench::TextLines DescribeEvent(const records::SentEvent& event);

/// What a run sent, by event id.
class EventSummary {
public:
    void Add(const records::SentEvent& event, std::chrono::seconds time);

    /// Id, name, count, bytes, first and last time of each kind of event.
    workbench::TextLines Describe() const;

private:
    struct Row {
        std::size_t count = 0;
        std::size_t bytes = 0;
        std::chrono::seconds first{};
        std::chrono::seconds last{};
    };

    std::map<int, Row> rows;
};

}  // namespace host
