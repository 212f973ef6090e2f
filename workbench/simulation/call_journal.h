// What the plug-in asked the operating system for, call by call.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/call_text.h"
#include "simulation/slim_mutex.h"

namespace simulation {

/// Whether the journal of the machine in force notes calls: only then are they put into words.
bool CallsAreNoted();

/// One argument as text; see call_text.h for the forms.
struct CallArgument {
    template <class Value>
    CallArgument(const char* argumentName, const Value& argument)
        : name(argumentName), value(CallsAreNoted() ? CallText(argument) : std::string()) {}

    std::string name;
    std::string value;
};

/// One call. The sequence numbers follow the order in which calls began.
struct JournalEntry {
    std::uint64_t sequence = 0;
    DWORD threadId = 0;
    std::string function;
    std::vector<CallArgument> arguments;
    std::string result;  ///< Empty while the call is under way, and for functions without result.
    DWORD error = 0;     ///< The error number the call failed with; 0 when it succeeded.
    bool finished = false;

    /// The text of the argument `name`. Throws std::out_of_range naming the arguments there are.
    const std::string& operator[](std::string_view name) const;
};

/// Every call that reached a fake, in order. Safe to use from any thread.
class CallJournal {
public:
    /// Notes that a call begins; the number is for Finish.
    std::uint64_t Begin(std::string_view function);
    void Finish(std::uint64_t sequence, std::vector<CallArgument> arguments, std::string result,
                DWORD error);

    std::vector<JournalEntry> Entries() const;
    /// The calls of one function, in order.
    std::vector<JournalEntry> Calls(std::string_view function) const;
    std::size_t Count(std::string_view function) const;
    /// The function of each call, in order.
    std::vector<std::string> Names() const;
    /// Forgets the calls so far; sequence numbers go on.
    void Clear();

    /// Notes no more calls, which makes them many times faster.
    void Stop() { stopped = true; }
    bool IsKept() const { return !stopped; }

private:
    std::atomic<bool> stopped{false};
    mutable SlimMutex mutex;
    std::uint64_t firstSequence = 0;
    std::vector<JournalEntry> entries;
};

}  // namespace simulation
