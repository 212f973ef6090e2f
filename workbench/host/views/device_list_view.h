// Device lists, put together again from the chunks in which they were sent, as tables.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "common/text_table.h"
#include "records/record.h"

namespace host {

/// What one list says under one key.
struct DeviceSection {
    std::string key;
    std::vector<records::ListedDevice> devices;
    std::size_t unreadableChunks = 0;
};

struct DeviceList {
    std::chrono::seconds time{};
    std::size_t events = 0;
    std::size_t bytes = 0;
    std::vector<DeviceSection> sections;  ///< In the order in which they were sent.
};

/// Collects the chunks of every list of a run.
class DeviceLists {
public:
    /// The plug-in says that it begins to send a list.
    void Begin(std::chrono::seconds time) { lists.emplace_back().time = time; }
    /// An event of the list that was begun last; events of other kinds are ignored.
    void Add(const records::SentEvent& event);

    /// A table with a row for each list, what changed from list to list, and the last list in full;
    /// no line when there is no list. `firstNumber` is the number of the first list, counted on its
    /// machine.
    workbench::TextLines Describe(int firstNumber) const;

private:
    std::vector<DeviceList> lists;
};

}  // namespace host
