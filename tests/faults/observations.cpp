#include "faults/observations.h"

#include "simulation/call_text.h"

namespace faults_test {
namespace {

std::string NameOf(DWORD threadId, const ThreadNamesById& names) {
    const auto found = names.find(threadId);
    return found == names.end() ? "loop" : found->second;
}

/// Texts of firmware and component are in no special encoding; the payload has to be UTF-8.
Json ValueOf(const std::string& text) {
    if (text.empty() || text.front() != '[') {
        return text;
    }
    const Json list = Json::parse(text, /*cb=*/nullptr, /*allow_exceptions=*/false);
    return list.is_array() && list.dump() == text ? list : Json(text);
}

/// The fills come in this order: HID devices, all devices, and one for each arrival.
std::string FillOf(std::size_t opened) {
    const char* const fills[] = {"none", "HID", "all"};
    return opened < 3 ? fills[opened] : "arrival";
}

}  // namespace

Json LinesByThread(const std::vector<test_support::LogLine>& lines, const ThreadNamesById& names) {
    Json result = {{"host", Json::array()},
                   {"loop", Json::array()},
                   {"monitor", Json::array()},
                   {"firmware", Json::array()}};
    for (const test_support::LogLine& line : lines) {
        result[NameOf(line.threadId, names)].push_back(std::to_string(line.level) + " " +
                                                       simulation::ToUtf8(line.text));
    }
    return result;
}

Json EventsById(const std::vector<test_support::Event>& events) {
    // In the order of their ids, because those of several threads come in any order.
    std::map<int, Json> byId;
    for (const test_support::Event& event : events) {
        Json fields = Json::object();
        for (const auto& [key, value] : event.fields) {
            fields[fields.contains(key) ? key + " again" : key] = ValueOf(value);
        }
        byId.emplace(event.id, Json::array()).first->second.push_back(std::move(fields));
    }
    Json result = Json::object();
    for (auto& [id, list] : byId) {
        result[std::to_string(id)] = std::move(list);
    }
    return result;
}

Json LeftResources(const simulation::ResourceLedger& ledger) {
    Json left = Json::array();
    for (const simulation::OpenResource& resource : ledger.Open()) {
        left.push_back(simulation::KindName(resource.kind));
    }
    for (const std::string& error : ledger.Errors()) {
        left.push_back(error);
    }
    return left;
}

std::vector<Call> CallsOf(const std::vector<simulation::JournalEntry>& entries,
                          const ThreadNamesById& names) {
    std::vector<Call> calls;
    std::map<std::string, unsigned> counts;
    for (const simulation::JournalEntry& entry : entries) {
        Call call{entry.function, ++counts[entry.function], {}};
        for (const simulation::CallArgument& argument : entry.arguments) {
            call.context[argument.name] = argument.value;
        }
        call.context["thread"] = NameOf(entry.threadId, names);
        call.context["fill"] = FillOf(counts["SetupDiGetClassDevsW"]);
        calls.push_back(std::move(call));
    }
    return calls;
}

}  // namespace faults_test
