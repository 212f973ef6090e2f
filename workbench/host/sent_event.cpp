#include "host/sent_event.h"

#include "standins/common/text.h"

namespace host {

std::string EventName(int id) {
    switch (id) {
        case kBiosInfoEventId:
            return "BIOS information";
        case kEcLogEventId:
            return "embedded controller's log";
        case kPopUpBlockInfoEventId:
            return "optimisation component";
        case kDeviceListEventId:
            return "device list";
        default:
            return "unknown event";
    }
}

std::size_t EventBytes(const SentEvent& event) {
    std::size_t bytes = 0;
    for (const SentField& field : event.fields) {
        bytes += field.key.size() + field.value.size();
    }
    return bytes;
}

std::string FieldText(const std::string& bytes) {
    return standins::ToUtf8(standins::ToWide(bytes));
}

}  // namespace host
