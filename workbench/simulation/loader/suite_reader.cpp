#include "simulation/loader/section_readers.h"

namespace simulation {
namespace {

std::map<std::string, int> ReadFeatures(const JsonNode& node) {
    std::map<std::string, int> features;
    for (const auto& [name, value] : node.Members()) {
        features[name] = value.Whole<int>();
    }
    return features;
}

std::multimap<std::string, std::string> ReadShelf(const JsonNode& node) {
    std::multimap<std::string, std::string> properties;
    for (const auto& [name, values] : node.Members()) {
        for (const JsonNode& value : values.Items()) {
            properties.emplace(name, value.Utf8());
        }
    }
    return properties;
}

EcLogAnswer ReadEcLog(const JsonNode& node) {
    constexpr std::size_t kMostBytes = 253;
    const JsonObject object(node, kEcLogShape);
    EcLogAnswer answer;
    ReadIfPresent(object, "callResult", answer.callResult, &JsonNode::Whole<int>);
    ReadIfPresent(object, "status", answer.status, &JsonNode::Whole<std::uint8_t>);
    if (const auto data = object.Find("data")) {
        answer.data = data->Hex();
        if (answer.data.size() > kMostBytes) {
            data->Fail("expected at most " + std::to_string(kMostBytes) + " bytes, found " +
                       std::to_string(answer.data.size()));
        }
    }
    answer.dataSize = static_cast<std::uint8_t>(answer.data.size());
    ReadIfPresent(object, "dataSize", answer.dataSize, &JsonNode::Whole<std::uint8_t>);
    return answer;
}

}  // namespace

Suite ReadSuite(const JsonNode& node) {
    const JsonObject object(node, kSuiteShape);
    Suite suite;
    ReadIfPresent(object, "consent", suite.consent, &JsonNode::Utf8);
    ReadIfPresent(object, "features", suite.features, ReadFeatures);
    ReadNullable(object, "shelf", suite.shelf, ReadShelf);
    ReadIfPresent(object, "ecLog", suite.ecLog, ReadEcLog);
    ReadIfPresent(object, "firmwareStartResult", suite.firmwareStartResult, &JsonNode::Whole<int>);
    return suite;
}

}  // namespace simulation
