// The main program of every test in this folder.
#include <gmock/gmock.h>

#include <CLI/CLI.hpp>
#include <cstdio>

#include "reliability/options.h"
#include "support/reliability_record.h"

namespace reliability_test {
namespace {

Options options;
test_support::ReliabilityRecord* record = nullptr;

}  // namespace

const Options& TheOptions() { return options; }

void AddRow(const std::string& what, std::uint64_t tried, std::uint64_t wrong) {
    std::printf("%s: %llu, %llu of them ended badly\n", what.c_str(),
                static_cast<unsigned long long>(tried), static_cast<unsigned long long>(wrong));
    std::fflush(stdout);
    record->Add(what, tried, wrong);
}

}  // namespace reliability_test

int main(int argumentCount, char** arguments) {
    using namespace reliability_test;
    testing::InitGoogleMock(&argumentCount, arguments);
    CLI::App program("Tries the plug-in for long.");
    program.add_option("--seed", options.seed, "Where all random choices start (default 1)");
    program.add_option("--rounds", options.rounds, "Lives of the plug-in in one process")
        ->check(CLI::Range(20, 1'000'000));
    program.add_option("--days", options.days, "Days that the soak simulates")
        ->check(CLI::Range(15, 3660));
    program.add_option("--moments", options.moments, "Moments at which a process exits")
        ->check(CLI::Range(1, 1'000'000));
    program.add_option("--lives", options.lives, "Lives of the plug-in under stress")
        ->check(CLI::Range(1, 1'000'000));
    program.add_option("--pairs", options.pairs, "Lives in which two calls fail")
        ->check(CLI::Range(1, 1'000'000));
    CLI11_PARSE(program, argumentCount, arguments);

    test_support::ReliabilityRecord recordOfThisProgram;
    record = &recordOfThisProgram;
    const int result = RUN_ALL_TESTS();
    recordOfThisProgram.Write();
    return result;
}
