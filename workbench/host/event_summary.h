// What a run sent, by event id.
#pragma once

#include <chrono>
#include <map>

#include "host/sent_event.h"
#include "host/text_table.h"

namespace host {

class EventSummary {
public:
    void Add(const SentEvent& event, std::chrono::seconds time);

    /// Id, name, count, bytes, first and last time of each kind of event.
    TextLines Describe() const;

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
