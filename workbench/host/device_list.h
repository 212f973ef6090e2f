// Device lists, put together again from the chunks in which they were sent.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "host/sent_event.h"
#include "host/text_table.h"

namespace host {

/// One device as the payload describes it. A text that the payload lacks is empty.
struct ListedDevice {
    std::string className;
    std::string description;
    std::string device;
    std::string maker;
    std::string name;
};

/// The devices of one chunk; nothing when it is not a JSON array of objects with string values.
std::optional<std::vector<ListedDevice>> ParseDeviceChunk(const std::string& json);

/// Collects the chunks of every list of a run.
class DeviceLists {
public:
    /// The plug-in says that it begins to send a list.
    void Begin(std::chrono::seconds time);
    /// An event of the list that was begun last; events of other kinds are ignored.
    void Add(const SentEvent& event);

    std::size_t Count() const { return lists.size(); }
    /// A table of each list; one with the same devices as the list before it is only mentioned.
    TextLines Describe() const;

private:
    struct Section {
        std::string key;
        std::vector<ListedDevice> devices;
        std::size_t unreadableChunks = 0;
    };
    struct List {
        std::chrono::seconds time{};
        std::size_t events = 0;
        std::size_t bytes = 0;
        std::vector<Section> sections;  ///< In the order in which they were sent.
    };

    static TextLines DescribeSections(const List& list);

    std::vector<List> lists;
};

}  // namespace host
