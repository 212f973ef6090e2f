#include "records/json_lines.h"

#include <algorithm>

#include "common/bad_input.h"
#include "simulation/machine_loader.h"

namespace records {

void ForEachLine(std::string_view text, std::string_view path,
                 const std::function<void(std::string_view line, const std::string& place)>& read) {
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        line = line.substr(0, line.find_last_not_of('\r') + 1);
        if (line.find_first_not_of(" \t") != std::string_view::npos) {
            read(line, std::string(path) + ":" + std::to_string(number));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

void ReadJsonLine(std::string_view line, const std::string& place, const std::string& advice,
                  const std::function<void(const simulation::JsonNode& value)>& read) {
    using Json = nlohmann::json;
    try {
        const Json json = Json::parse(line);
        read(simulation::JsonNode(json, place));
    } catch (const Json::parse_error& error) {
        throw workbench::BadInput(place + ": not valid JSON at column " +
                                  std::to_string(error.byte) + advice);
    } catch (const Json::out_of_range&) {
        throw workbench::BadInput(place + ": a number is too large" + advice);
    } catch (const simulation::MachineFileError& error) {
        throw workbench::BadInput(error.what() + advice);
    }
}

simulation::JsonNode Member(const simulation::JsonNode& object, const std::string& key) {
    for (const auto& [name, member] : object.Members()) {
        if (name == key) {
            return member;
        }
    }
    object.Fail("the key \"" + key + "\" is missing");
}

}  // namespace records
