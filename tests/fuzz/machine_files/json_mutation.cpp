#include "fuzz/machine_files/json_mutation.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "fuzz/texts.h"
#include "simulation/call_text.h"

namespace fuzz_machine_files {
namespace {

using nlohmann::json;

/// Every value of the tree, the root first.
void Collect(json& value, std::vector<json*>& values) {
    values.push_back(&value);
    if (value.is_structured()) {
        for (json& member : value) {
            Collect(member, values);
        }
    }
}

json MakeValue(fuzz::Random& random) {
    constexpr std::int64_t kNumbers[] = {0,          -1,           65535,     65536,    2147483647,
                                         2147483648, 4294967296LL, INT64_MIN, INT64_MAX};
    constexpr const char* kTexts[] = {"",        "1.2.3.4",  "1.2.3.99999", "{3D2F7A10-6C1B}",
                                      "${n:9Z}", "${n",      "0G",          "0",
                                      "hid",     "internal", "S-1-5",       "a\nb"};
    switch (random.Below(10)) {
        case 0:
            return nullptr;
        case 1:
            return random.OneIn(2);
        case 2:
            return random.Pick(kNumbers);
        case 3:
            return 1.5;
        case 4:
            return json::array();
        case 5:
            return json::object();
        case 6:
            return simulation::ToUtf8(fuzz::MakeText(random, 300));
        case 7:
            return UINT64_MAX;
        default:
            return random.Pick(kTexts);
    }
}

/// Another value of the same document, where it does not belong.
json Elsewhere(fuzz::Random& random, const std::vector<json*>& values) {
    return *random.Pick(values);
}

void ChangeMember(fuzz::Random& random, json& object) {
    auto member = object.begin();
    std::advance(member, static_cast<std::ptrdiff_t>(random.Below(object.size())));
    const std::string key = member.key();
    const json value = member.value();
    object.erase(member);
    if (random.OneIn(3)) {
        return;
    }
    // A key with a slip of the hand, or with anything in it.
    std::string slip = key;
    if (!slip.empty() && !random.OneIn(4)) {
        slip[random.Below(slip.size())] = static_cast<char>(random.Between(0x20, 0x7E));
    } else {
        slip += simulation::ToUtf8(fuzz::MakeText(random, 20));
    }
    object[slip] = value;
}

void ChangeTree(fuzz::Random& random, json& document) {
    std::vector<json*> values;
    Collect(document, values);
    // Not the root, which would leave nothing of the document.
    json& value = *values[values.size() == 1 ? 0 : random.Between(1, values.size() - 1)];
    switch (random.Below(4)) {
        case 0:
            value = Elsewhere(random, values);
            break;
        case 1:
            if (value.is_object() && !value.empty()) {
                ChangeMember(random, value);
                break;
            }
            [[fallthrough]];
        default:
            value = MakeValue(random);
            break;
    }
}

void ChangeText(fuzz::Random& random, std::string& text) {
    const std::size_t position = random.Below(text.size() + 1);
    constexpr const char* kInsertions[] = {
        "\"",   "{",        "}",     "[",      "]",       ",",
        ":",    "null",     "1e999", "-1e999", "\\u0000", "\\ud800",
        "\xFF", "\xC0\x80", "\n",    "//",     "1e-999",  "123456789012345678901234567890"};
    switch (random.Below(5)) {
        case 0:
            text.resize(position);
            break;
        case 1:
            text.erase(position, random.Below(20));
            break;
        case 2:
            text.insert(position, fuzz::MakeBytes(random, random.Below(8)));
            break;
        case 3: {
            // Deep, but not so that nothing else is tried.
            const std::size_t depth = random.OneIn(64) ? 100000 : random.Below(50);
            text.insert(position, std::string(depth, random.OneIn(2) ? '[' : '{'));
            break;
        }
        default: {
            // In the place of a number, where there is one.
            const std::size_t digit = text.find_first_of("0123456789", position);
            const std::string insertion = random.Pick(kInsertions);
            if (digit == std::string::npos) {
                text.insert(position, insertion);
            } else {
                text.replace(digit, 1, insertion);
            }
            break;
        }
    }
}

}  // namespace

std::string Mutated(fuzz::Random& random, const std::string& document) {
    json tree = json::parse(document);
    if (!random.OneIn(4)) {
        for (std::size_t changes = random.Between(1, 3); changes > 0; --changes) {
            ChangeTree(random, tree);
        }
    }
    std::string text = tree.dump();
    if (random.OneIn(3)) {
        ChangeText(random, text);
    }
    return text;
}

}  // namespace fuzz_machine_files
