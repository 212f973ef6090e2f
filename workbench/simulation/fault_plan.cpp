#include "simulation/fault_plan.h"

#include <mutex>
#include <ostream>

namespace simulation {

const char* VariantName(FaultVariant variant) {
    // In the order of their declaration.
    constexpr const char* kNames[] = {"Fail", "NullResult", "ShortSize", "SuccessWithNothing"};
    return kNames[static_cast<std::size_t>(variant)];
}

std::ostream& operator<<(std::ostream& stream, const Fault& fault) {
    stream << fault.function;
    if (fault.call == 0) {
        stream << " (every call)";
    } else {
        stream << " (call " << fault.call << ')';
    }
    return stream << ' ' << VariantName(fault.variant) << ' ' << fault.error;
}

void FaultPlan::FailCall(std::string_view function, unsigned call, DWORD error,
                         FaultVariant variant) {
    const std::lock_guard lock(mutex);
    const auto counted = counts.find(function);
    const unsigned before = counted == counts.end() ? 0 : counted->second;
    planned.push_back({{std::string(function), call, error, variant}, before + call, false});
}

void FaultPlan::FailEveryCall(std::string_view function, DWORD error, FaultVariant variant) {
    const std::lock_guard lock(mutex);
    planned.push_back({{std::string(function), 0, error, variant}, 0, false});
}

void FaultPlan::Clear() {
    const std::lock_guard lock(mutex);
    planned.clear();
    counts.clear();
}

std::optional<Fault> FaultPlan::Next(std::string_view function) {
    const std::lock_guard lock(mutex);
    auto counted = counts.find(function);
    if (counted == counts.end()) {
        counted = counts.emplace(function, 0).first;
    }
    const unsigned call = ++counted->second;
    Planned* match = nullptr;
    for (Planned& candidate : planned) {
        if (candidate.fault.function == function &&
            (candidate.countAtCall == call || (candidate.fault.call == 0 && match == nullptr))) {
            match = &candidate;
        }
    }
    if (match == nullptr) {
        return std::nullopt;
    }
    match->hit = true;
    return match->fault;
}

std::vector<Fault> FaultPlan::Missed() const {
    const std::lock_guard lock(mutex);
    std::vector<Fault> missed;
    for (const Planned& candidate : planned) {
        if (!candidate.hit) {
            missed.push_back(candidate.fault);
        }
    }
    return missed;
}

}  // namespace simulation
