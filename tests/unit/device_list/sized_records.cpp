#include "unit/device_list/sized_records.h"

#include <algorithm>
#include <stdexcept>

#include "support/strict_json.h"

namespace device_list_test {
namespace {

constexpr std::size_t kFieldUnits = 32;

std::size_t EmptyCost(bool withName) { return withName ? kEmptyCost : kEmptyCostWithoutName; }

std::size_t LargestCost(bool withName) {
    return EmptyCost(withName) + (withName ? 5 : 4) * kFieldUnits;
}

std::wstring FourDigits(unsigned number) {
    const std::wstring digits = std::to_wstring(number);
    return std::wstring(4 - std::min<std::size_t>(4, digits.size()), L'0') + digits;
}

}  // namespace

DeviceReporter::DeviceInfo RecordOfCost(std::size_t cost, bool withName, unsigned number) {
    const std::size_t emptyCost = EmptyCost(withName);
    if (cost <= emptyCost + kFieldUnits || cost > LargestCost(withName)) {
        throw std::invalid_argument("no record costs " + std::to_string(cost));
    }
    DeviceReporter::DeviceInfo record;
    std::vector<std::wstring*> fields{&record.vendorId, &record.className, &record.description,
                                      &record.manufacturer};
    if (withName) {
        fields.push_back(&record.name);
    } else {
        record.name = L"not sent and not counted";
    }
    std::size_t left = cost - emptyCost;
    for (std::wstring* const field : fields) {
        const std::size_t length = std::min(left, kFieldUnits);
        field->assign(length, L'x');
        left -= length;
    }
    record.vendorId.replace(0, 4, FourDigits(number));
    return record;
}

std::vector<DeviceReporter::DeviceInfo> RecordsOfCost(std::size_t cost, bool withName) {
    std::vector<DeviceReporter::DeviceInfo> records;
    std::size_t left = cost;
    while (left > LargestCost(withName)) {
        const std::size_t part = kRoom / (withName ? 5 : 6);
        records.push_back(RecordOfCost(part, withName, static_cast<unsigned>(records.size())));
        left -= part;
    }
    records.push_back(RecordOfCost(left, withName, static_cast<unsigned>(records.size())));
    return records;
}

std::vector<std::string> NumbersIn(const std::string& chunk) {
    const test_support::Json array = test_support::ParseCompactJson(chunk);
    if (array.kind != test_support::Json::Kind::Array) {
        throw std::runtime_error("not an array: " + chunk);
    }
    std::vector<std::string> numbers;
    for (const test_support::Json& object : array.items) {
        for (const auto& [key, value] : object.members) {
            if (key == "device") {
                numbers.push_back(value.text.substr(0, 4));
            }
        }
    }
    if (numbers.size() != array.items.size()) {
        throw std::runtime_error("a device is missing in " + chunk);
    }
    return numbers;
}

}  // namespace device_list_test
