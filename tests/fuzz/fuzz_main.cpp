// The main program of every fuzz test.
#include <gmock/gmock.h>

#include <CLI/CLI.hpp>

#include "fuzz/campaign.h"
#include "fuzz/case_watch.h"
#include "standins/log_kit/log_kit_control.h"
#include "support/reliability_record.h"

int main(int argumentCount, char** arguments) {
    testing::InitGoogleMock(&argumentCount, arguments);
    fuzz::Options& options = fuzz::TheOptions();
    CLI::App program("Tries random inputs on the product's functions.");
    program.add_option("--seed", options.seed, "Where all random choices start (default 1)")
        ->envname("TALLYPORT_FUZZ_SEED");
    program.add_option("--inputs", options.inputs, "Number of inputs of each test")
        ->envname("TALLYPORT_FUZZ_INPUTS");
    program.add_option("--case", options.onlyCase, "Repeat this case only, and show its input")
        ->envname("TALLYPORT_FUZZ_CASE");
    CLI11_PARSE(program, argumentCount, arguments);

    // A repeated case is no campaign, which is what the record counts.
    std::optional<test_support::ReliabilityRecord> record;
    if (!options.onlyCase) {
        record.emplace();
    }
    LogKit_SetConsole(0);
    fuzz::InstallCaseWatch();
    const int result = RUN_ALL_TESTS();
    if (record) {
        for (const fuzz::Tally& tally : fuzz::Tallies()) {
            record->Add("fuzz inputs: " + tally.what, tally.tried, tally.wrong);
        }
        record->Write();
    }
    return result;
}
