#include "simulation/resource_ledger.h"

#include <algorithm>
#include <mutex>
#include <ostream>

#include "simulation/call_text.h"

namespace simulation {
namespace {

// No address of a 64-bit process and no real handle has these upper bits.
constexpr std::uintptr_t kSimulatedMark = 0x51A0'0000'0000'0000;
constexpr std::uintptr_t kMarkMask = 0xFFF0'0000'0000'0000;

}  // namespace

const char* KindName(ResourceKind kind) {
    // In the order of their declaration.
    constexpr const char* kNames[] = {
        "device set",   "registry key",    "printer",      "file",   "token",      "impersonation",
        "thread",       "notification",    "window class", "window", "heap block", "WTS memory",
        "local memory", "module reference"};
    return kNames[static_cast<std::size_t>(kind)];
}

void* ResourceLedger::Acquire(ResourceKind kind, std::string note, std::wstring subject) {
    const std::lock_guard lock(mutex);
    ++lastNumber;
    // Handles of the system are multiples of four.
    void* const value = reinterpret_cast<void*>(kSimulatedMark | (lastNumber * 4));
    open.push_back({kind, value, std::move(note), std::move(subject)});
    ++acquired[kind];
    return value;
}

void ResourceLedger::Adopt(ResourceKind kind, const void* value, std::string note) {
    const std::lock_guard lock(mutex);
    open.push_back({kind, const_cast<void*>(value), std::move(note)});
    ++acquired[kind];
}

bool ResourceLedger::Release(ResourceKind kind, const void* value) {
    const std::lock_guard lock(mutex);
    const auto found = Find(kind, value);
    if (found != open.end()) {
        if (!IsSimulatedHandle(value)) {
            returned.insert(value);
        }
        open.erase(found);
        return true;
    }
    errors.push_back(
        std::string(KindName(kind)) + " " + CallText(value) +
        (WasReturned(value) ? " was released twice" : " was released but never handed out"));
    return false;
}

bool ResourceLedger::WasReturned(const void* value) const {
    if (!IsSimulatedHandle(value)) {
        return returned.count(value) != 0;
    }
    const auto number = (reinterpret_cast<std::uintptr_t>(value) & ~kMarkMask) / 4;
    return number >= 1 && number <= lastNumber &&
           std::none_of(open.begin(), open.end(),
                        [value](const OpenResource& resource) { return resource.value == value; });
}

std::optional<OpenResource> ResourceLedger::FindOpen(ResourceKind kind, const void* value) const {
    const std::lock_guard lock(mutex);
    const auto found = Find(kind, value);
    return found == open.end() ? std::nullopt : std::optional(*found);
}

std::vector<OpenResource>::const_iterator ResourceLedger::Find(ResourceKind kind,
                                                               const void* value) const {
    return std::find_if(open.begin(), open.end(), [&](const OpenResource& resource) {
        return resource.kind == kind && resource.value == value;
    });
}

bool ResourceLedger::IsSimulatedHandle(const void* value) {
    return (reinterpret_cast<std::uintptr_t>(value) & kMarkMask) == kSimulatedMark;
}

std::vector<OpenResource> ResourceLedger::Open() const {
    const std::lock_guard lock(mutex);
    return open;
}

std::size_t ResourceLedger::CountOpen(ResourceKind kind) const {
    const std::lock_guard lock(mutex);
    return static_cast<std::size_t>(
        std::count_if(open.begin(), open.end(),
                      [&](const OpenResource& resource) { return resource.kind == kind; }));
}

std::size_t ResourceLedger::CountAcquired(ResourceKind kind) const {
    const std::lock_guard lock(mutex);
    const auto found = acquired.find(kind);
    return found == acquired.end() ? 0 : found->second;
}

std::vector<std::string> ResourceLedger::Errors() const {
    const std::lock_guard lock(mutex);
    return errors;
}

bool ResourceLedger::Balanced() const {
    const std::lock_guard lock(mutex);
    return open.empty() && errors.empty();
}

std::ostream& operator<<(std::ostream& stream, const ResourceLedger& ledger) {
    for (const OpenResource& resource : ledger.Open()) {
        stream << KindName(resource.kind) << ' ' << CallText(resource.value);
        if (!resource.note.empty()) {
            stream << " (" << resource.note << ')';
        }
        stream << " was not given back\n";
    }
    for (const std::string& error : ledger.Errors()) {
        stream << error << '\n';
    }
    return stream;
}

}  // namespace simulation
