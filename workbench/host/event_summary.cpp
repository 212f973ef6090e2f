#include "host/event_summary.h"

#include "host/machine_time.h"

namespace host {

void EventSummary::Add(const SentEvent& event, std::chrono::seconds time) {
    Row& row = rows[event.id];
    if (row.count == 0) {
        row.first = time;
    }
    ++row.count;
    row.bytes += EventBytes(event);
    row.last = time;
}

TextLines EventSummary::Describe() const {
    if (rows.empty()) {
        return {"No event was sent."};
    }
    TextTable table;
    table.rightAligned = {2, 3, 4, 5};
    table.rows.push_back({"event", "name", "count", "bytes", "first", "last"});
    for (const auto& [id, row] : rows) {
        table.rows.push_back({std::to_string(id), EventName(id), std::to_string(row.count),
                              std::to_string(row.bytes), FormatMachineTime(row.first),
                              FormatMachineTime(row.last)});
    }
    return FormatTable(table);
}

}  // namespace host
