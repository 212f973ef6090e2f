#include "simulation/loader/section_readers.h"

namespace simulation {

void Read(const JsonNode& node, Firmware& firmware) {
    node.ReadObject({{"boardProduct", Into(firmware.boardProduct)},
                     {"oemProduct", Into(firmware.oemProduct)},
                     {"biosVersion", Into(firmware.biosVersion)}});
}

void Read(const JsonNode& node, EcLogAnswer& answer) {
    constexpr std::size_t kMostBytes = 253;
    const auto readData = [&](const JsonNode& member) {
        answer.data = member.Hex();
        if (answer.data.size() > kMostBytes) {
            member.Fail("expected at most " + std::to_string(kMostBytes) + " bytes, found " +
                        std::to_string(answer.data.size()));
        }
        answer.dataSize = static_cast<std::uint8_t>(answer.data.size());
    };
    node.ReadObject({{"callResult", Into(answer.callResult)},
                     {"status", Into(answer.status)},
                     {"data", readData},
                     {"dataSize", Into(answer.dataSize)}});
}

void Read(const JsonNode& node, std::map<std::string, int>& features) {
    for (const auto& [name, value] : node.Members()) {
        Read(value, features[name]);
    }
}

void Read(const JsonNode& node, std::multimap<std::string, std::string>& shelf) {
    for (const auto& [name, values] : node.Members()) {
        for (const JsonNode& value : values.Items()) {
            shelf.emplace(name, value.Utf8());
        }
    }
}

void Read(const JsonNode& node, Suite& suite) {
    node.ReadObject({{"consent", Into(suite.consent)},
                     {"features", Into(suite.features)},
                     {"shelf", Into(suite.shelf)},
                     {"ecLog", Into(suite.ecLog)},
                     {"firmwareStartResult", Into(suite.firmwareStartResult)}});
}

}  // namespace simulation
