#include "fuzz/campaign.h"

#include <chrono>
#include <cstdio>

#include "fuzz/case_watch.h"
#include "support/reliability_record.h"

namespace fuzz {
namespace {

/// A defect that breaks every input must not bury its first example.
constexpr std::uint64_t kShownFailures = 3;

std::vector<Tally>& ChangeableTallies() {
    static std::vector<Tally> tallies;
    return tallies;
}

double Seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::string CurrentTest() {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    return std::string(test.test_suite_name()) + "." + test.name();
}

}  // namespace

Options& TheOptions() {
    static Options options;
    return options;
}

const std::vector<Tally>& Tallies() { return ChangeableTallies(); }

Campaign::Campaign(const char* what, std::uint64_t fullInputs) : beginSeconds(Seconds()) {
    const Options& options = TheOptions();
    tally.what = what;
    first = options.onlyCase.value_or(0);
    const std::uint64_t share = test_support::FullCounts() ? 1 : 20;
    end = options.onlyCase ? first + 1 : options.inputs.value_or(fullInputs / share);
    number = first - 1;
    WatchCasesOf(CurrentTest(), options.seed);
}

Campaign::~Campaign() {
    StopWatching();
    const double seconds = Seconds() - beginSeconds;
    std::printf("    %llu %s from seed %llu in %.1f s, %.0f a second\n",
                static_cast<unsigned long long>(tally.tried), tally.what.c_str(),
                static_cast<unsigned long long>(TheOptions().seed), seconds,
                static_cast<double>(tally.tried) / (seconds > 0 ? seconds : 1));
    std::fflush(stdout);
    ChangeableTallies().push_back(tally);
}

bool Campaign::Next() {
    if (++number == end) {
        return false;
    }
    ++tally.tried;
    CaseBegins(number);
    return true;
}

void Campaign::Show(const std::string& input) const {
    std::printf("    Case %llu is %s\n", static_cast<unsigned long long>(number), input.c_str());
    std::fflush(stdout);
}

void Campaign::Fail(const std::string& complaint, const std::string& input) {
    if (++tally.wrong <= kShownFailures) {
        ADD_FAILURE() << complaint << "\nThe input is " << input
                      << "\nTo repeat it: " << RepeatCommand(number);
    } else if (tally.wrong == kShownFailures + 1) {
        ADD_FAILURE() << "More of these " << tally.what << " fail; they are counted, not shown.";
    }
}

}  // namespace fuzz
