// Device lists, put together again from the chunks in which they were sent.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "host/sent_event.h"

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

/// What one list says under one key.
struct DeviceSection {
    std::string key;
    std::vector<ListedDevice> devices;
    std::size_t unreadableChunks = 0;
};

struct DeviceList {
    std::chrono::seconds time{};
    std::size_t events = 0;
    std::size_t bytes = 0;
    std::vector<DeviceSection> sections;  ///< In the order in which they were sent.
};

/// Collects the chunks of every list of a run.
class DeviceListCollector {
public:
    /// The plug-in says that it begins to send a list.
    void Begin(std::chrono::seconds time);
    /// An event of the list that was begun last; events of other kinds are ignored.
    void Add(const SentEvent& event);

    const std::vector<DeviceList>& Lists() const { return lists; }

private:
    std::vector<DeviceList> lists;
};

}  // namespace host
