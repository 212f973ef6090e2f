// Trying many random inputs. Every input follows from a seed and a case number, so each can be had
// again:
//
//     x_fuzz_test.exe --gtest_filter=Suite.Test --seed 7 --case 1234    one input, which is shown
//     x_fuzz_test.exe --inputs 10000000 --seed 7                        more and other inputs
//
// The options have environment variables of the same meaning, for runs through CTest. A case that
// fails, crashes or hangs is shown with the command that repeats it. It then becomes a test of its
// own with a name: `check` is called with that very input, or for machine files the file goes to
// regressions/.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/property.h"
#include "fuzz/random.h"

namespace fuzz {

struct Options {
    std::uint64_t seed = 1;
    std::optional<std::uint64_t> onlyCase;
    std::optional<std::uint64_t> inputs;  ///< For each test, instead of its own number.
};

/// Set before the tests run.
Options& TheOptions();

/// What one test tried.
struct Tally {
    std::string what;
    std::uint64_t tried = 0;
    std::uint64_t wrong = 0;
};

/// Of all tests so far.
const std::vector<Tally>& Tallies();

/// The cases of the current test, one after the other.
class Campaign {
public:
    Campaign(const char* what, std::uint64_t fullInputs);
    ~Campaign();
    Campaign(const Campaign&) = delete;
    Campaign& operator=(const Campaign&) = delete;

    /// Goes to the next case; false behind the last.
    bool Next();
    Random Choices() const { return {TheOptions().seed, number}; }

    /// Whether a single case is repeated, whose input is then to be shown.
    bool Repeats() const { return TheOptions().onlyCase.has_value(); }
    void Show(const std::string& input) const;
    void Fail(const std::string& complaint, const std::string& input);

private:
    Tally tally;
    std::uint64_t first = 0;
    std::uint64_t end = 0;
    std::uint64_t number = 0;
    double beginSeconds = 0;
};

/// Makes inputs and checks the product's answer to each. `what` names the inputs in the plural.
/// `check` throws when something is wrong.
template <class Input>
void TryInputs(const char* what, std::uint64_t fullInputs, Input (*make)(Random&),
               void (*check)(const Input&)) {
    Campaign campaign(what, fullInputs);
    while (campaign.Next()) {
        Random random = campaign.Choices();
        const Input input = make(random);
        if (campaign.Repeats()) {
            campaign.Show(testing::PrintToString(input));
        }
        try {
            check(input);
        } catch (const std::exception& error) {
            campaign.Fail(error.what(), testing::PrintToString(input));
        }
    }
}

}  // namespace fuzz
