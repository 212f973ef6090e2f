#include "simulation/call_journal.h"

#include <algorithm>
#include <mutex>
#include <ostream>
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

std::ostream& operator<<(std::ostream& stream, const JournalEntry& entry) {
    stream << '#' << entry.sequence << " [" << entry.threadId << "] " << entry.function << '(';
    const char* separator = "";
    for (const CallArgument& argument : entry.arguments) {
        stream << separator << argument.name << '=' << argument.value;
        separator = ", ";
    }
    stream << ')';
    if (!entry.finished) {
        return stream << " ...";
    }
    if (!entry.result.empty()) {
        stream << " = " << entry.result;
    }
    if (entry.error != 0) {
        stream << " error " << entry.error;
    }
    return stream;
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

std::size_t CallJournal::Count(std::string_view function) const {
    const std::lock_guard lock(mutex);
    return static_cast<std::size_t>(
        std::count_if(entries.begin(), entries.end(),
                      [&](const JournalEntry& entry) { return entry.function == function; }));
}

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

std::ostream& operator<<(std::ostream& stream, const CallJournal& journal) {
    for (const JournalEntry& entry : journal.Entries()) {
        stream << entry << '\n';
    }
    return stream;
}

}  // namespace simulation
