// What a scenario left behind, in the form in which it is compared with what is expected.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "faults/scenario.h"
#include "simulation/call_journal.h"
#include "simulation/resource_ledger.h"
#include "support/recorded_events.h"
#include "support/recorded_log.h"

namespace faults_test {

/// Threads that are not named are "loop".
using ThreadNamesById = std::map<DWORD, std::string>;

struct Observed {  // NOLINT(bugprone-exception-escape): Json's order copies when it moves
    Json lines;
    Json left;
    std::vector<Call> calls;
    std::size_t keptBlocks = 0;
    bool faultsWereMet = false;
};

/// {"host": ["3 Register timer:12(...)", ...], "loop": [...], "monitor": [...], "firmware": [...]}
Json LinesByThread(const std::vector<test_support::LogLine>& lines, const ThreadNamesById& names);

/// {"992614500": [{"Product": "X", ...}], ...}; what is a JSON array as a text stays one only when
/// it is written compactly.
Json EventsById(const std::vector<test_support::Event>& events);

/// Kinds of what is open, then what came back wrongly.
Json LeftResources(const simulation::ResourceLedger& ledger);

std::vector<Call> CallsOf(const std::vector<simulation::JournalEntry>& entries,
                          const ThreadNamesById& names);

}  // namespace faults_test
