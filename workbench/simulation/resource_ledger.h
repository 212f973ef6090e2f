// Accounts for every resource that the simulated system hands out.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "simulation/slim_mutex.h"

namespace simulation {

enum class ResourceKind {
    DeviceSet,
    RegistryKey,
    Printer,
    File,
    Token,
    Impersonation,  ///< A thread's borrowed identity; the value is the thread id.
    Thread,
    Notification,
    WindowClass,
    Window,
    HeapBlock,
    WtsMemory,
    LocalMemory,
    ModuleReference,
};

const char* KindName(ResourceKind kind);

/// A resource that was handed out and has not been given back.
struct OpenResource {
    ResourceKind kind;
    void* value;
    std::string note;
    std::wstring subject = {};  ///< What a handle that has a name stands for.
};

/// What was handed out, what came back, and what came back wrongly. Safe to use from any thread.
class ResourceLedger {
public:
    /// Hands out a new handle value that is neither an address nor a real handle, and is never
    /// given twice. `note` says in messages what it stands for.
    void* Acquire(ResourceKind kind, std::string note = {}, std::wstring subject = {});

    /// Enters a value that exists already: an address, a real handle, an atom. A value may be
    /// entered several times (module references) and then has to come back as often.
    void Adopt(ResourceKind kind, const void* value, std::string note = {});

    /// Takes a resource back. False, with an entry in Errors(), when it is not out.
    bool Release(ResourceKind kind, const void* value);

    /// Takes a resource back if it is out; tells whether it was.
    bool ReleaseIfOpen(ResourceKind kind, const void* value) {
        return IsOpen(kind, value) && Release(kind, value);
    }

    bool IsOpen(ResourceKind kind, const void* value) const {
        return FindOpen(kind, value).has_value();
    }
    /// Nothing when it is not out.
    std::optional<OpenResource> FindOpen(ResourceKind kind, const void* value) const;
    /// Whether `value` was made by some ledger's Acquire, open or not.
    static bool IsSimulatedHandle(const void* value);

    /// In the order in which they were handed out.
    std::vector<OpenResource> Open() const;
    std::size_t CountOpen(ResourceKind kind) const;
    /// How many of a kind were ever handed out.
    std::size_t CountAcquired(ResourceKind kind) const;
    std::vector<std::string> Errors() const;
    /// Nothing is out and nothing came back wrongly.
    bool Balanced() const;

private:
    // Under the lock.
    std::vector<OpenResource>::const_iterator Find(ResourceKind kind, const void* value) const;
    bool WasReturned(const void* value) const;

    mutable SlimMutex mutex;
    std::uintptr_t lastNumber = 0;
    std::vector<OpenResource> open;
    std::map<ResourceKind, std::size_t> acquired;
    /// To tell "released twice" from "never handed out"; of Acquire's values the number tells.
    std::set<const void*> returned;
    std::vector<std::string> errors;
};

std::ostream& operator<<(std::ostream& stream, const ResourceLedger& ledger);

}  // namespace simulation
