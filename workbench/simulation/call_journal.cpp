#include "simulation/call_journal.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>

namespace simulation {

const std::string& JournalEntry::operator[](std::string_view name) const {
    std::string known;
    for (const CallArgument& argument : arguments) {
        if (argument.name == name) {
            return argument.value;
        }
        known += " " + argument.name;
    }
    throw std::out_of_range(function + " was journalled without an argument \"" +
                            std::string(name) + "\"; it has:" + known);
}

std::uint64_t CallJournal::Begin(std::string_view function) {
    JournalEntry entry;
    entry.threadId = GetCurrentThreadId();
    entry.function = function;
    const std::lock_guard lock(mutex);
    entry.sequence = firstSequence + entries.size();
    entries.push_back(std::move(entry));
    return entries.back().sequence;
}

void CallJournal::Finish(std::uint64_t sequence, std::vector<CallArgument> arguments,
                         std::string result, DWORD error) {
    const std::lock_guard lock(mutex);
    if (sequence < firstSequence) {
        return;  // Forgotten while the call was under way.
    }
    JournalEntry& entry = entries.at(static_cast<std::size_t>(sequence - firstSequence));
    entry.arguments = std::move(arguments);
    entry.result = std::move(result);
    entry.error = error;
    entry.finished = true;
}

std::vector<JournalEntry> CallJournal::Entries() const {
    const std::lock_guard lock(mutex);
    return entries;
}

std::vector<JournalEntry> CallJournal::Calls(std::string_view function) const {
    std::vector<JournalEntry> calls;
    const std::lock_guard lock(mutex);
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(calls),
                 [&](const JournalEntry& entry) { return entry.function == function; });
    return calls;
}

std::size_t CallJournal::Count(std::string_view function) const { return Calls(function).size(); }

std::vector<std::string> CallJournal::Names() const {
    const std::lock_guard lock(mutex);
    std::vector<std::string> names;
    names.reserve(entries.size());
    for (const JournalEntry& entry : entries) {
        names.push_back(entry.function);
    }
    return names;
}

void CallJournal::Clear() {
    const std::lock_guard lock(mutex);
    firstSequence += entries.size();
    entries.clear();
}

}  // namespace simulation
