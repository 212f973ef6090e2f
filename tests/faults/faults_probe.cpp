// Plays one scenario, for failures that end the process and for looking into one by hand:
//
//     faults_probe SCENARIO                        prints calls and outcome
//     faults_probe SCENARIO CALL NTH WAY NUMBER    lets a call fail and prints the outcome
//     faults_probe SCENARIO CALL NTH WAY NUMBER CALL NTH WAY NUMBER    two calls
#include <windows.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "faults/fault_table.h"

namespace {

using namespace faults_test;

/// At once: an orderly exit ends the other threads and then calls the library once more, and one of
/// them may have held a lock of the fakes.
void EndHere(int /*signal*/) {
    constexpr UINT kAborted = 3;
    TerminateProcess(GetCurrentProcess(), kAborted);
}

std::string CallLine(const Call& call) {
    std::string line = call.function + " " + std::to_string(call.nth);
    for (const auto& [name, value] : call.context) {
        line.append(", ").append(name).append("=").append(value);
    }
    return line;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount < 2 || argumentCount > 10 || argumentCount % 4 != 2) {
        std::fputs("usage: faults_probe SCENARIO [CALL NTH WAY NUMBER [CALL NTH WAY NUMBER]]\n",
                   stderr);
        return 2;
    }
    std::signal(SIGABRT, &EndHere);
    const Scenario scenario = LoadScenario(arguments[1]);
    std::vector<PlannedFault> faults;
    for (int i = 2; i < argumentCount; i += 4) {
        faults.push_back({arguments[i], static_cast<unsigned>(std::atoi(arguments[i + 1])),
                          arguments[i + 2], static_cast<unsigned>(std::atoll(arguments[i + 3]))});
    }
    const Played played = PlayScenario(scenario.scene, faults);
    for (const Call& call : played.calls) {
        std::printf("%s\n", CallLine(call).c_str());
    }
    std::printf("%s\n", played.outcome.dump(2).c_str());
    return 0;
}
