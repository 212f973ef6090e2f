// A process that exits while the plug-in works, at moments all over its life.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <string>
#include <vector>

#include "fuzz/random.h"
#include "reliability/options.h"
#include "support/child_process.h"

namespace {

using namespace reliability_test;

constexpr std::size_t kAtOnce = 3;

struct Exit {
    std::size_t call;  ///< During which it comes.
    unsigned code;
};

/// Empty when the process ended at once with its code, else how it ended.
std::string Ending(const Exit& exit) {
    const test_support::ChildResult child =
        test_support::RunChild(test_support::ProgramFolder() + L"\\exit_probe.exe",
                               {std::to_wstring(exit.code), std::to_wstring(exit.call)});
    if (!child.finished) {
        return "it hangs; " + child.output;
    }
    return child.exitCode == exit.code
               ? ""
               : "it exits with " + std::to_string(child.exitCode) + "; " + child.output;
}

/// Calls that the plug-in makes of others from Start to the end of Stop.
std::size_t CallsOfALife() {
    const test_support::ChildResult child =
        test_support::RunChild(test_support::ProgramFolder() + L"\\exit_probe.exe", {L"77"});
    EXPECT_EQ(child.exitCode, 77u) << child.output;
    return std::strtoul(child.output.c_str(), nullptr, 10);
}

TEST(ExitWithoutStop, ComesAtOnceWithItsCodeAtAnyMoment) {
    const std::size_t last = CallsOfALife();
    ASSERT_GT(last, 1000u);
    std::printf("seed %llu, %zu calls in a life\n",
                static_cast<unsigned long long>(TheOptions().seed), last);
    fuzz::Random random(TheOptions().seed, 1);
    unsigned wrong = 0;
    for (unsigned tried = 0; tried < TheOptions().moments; tried += kAtOnce) {
        std::vector<std::pair<Exit, std::future<std::string>>> children;
        for (unsigned i = tried; i < std::min<unsigned>(tried + kAtOnce, TheOptions().moments);
             ++i) {
            const Exit exit{random.Between(1, last),
                            static_cast<unsigned>(random.Between(10, 200))};
            children.emplace_back(exit, std::async(std::launch::async, Ending, exit));
        }
        for (auto& [exit, ending] : children) {
            const std::string complaint = ending.get();
            if (!complaint.empty()) {
                ++wrong;
                ADD_FAILURE() << "exit_probe " << exit.code << " " << exit.call << ": "
                              << complaint;
            }
        }
    }
    AddRow("exits of the process without Stop, at random moments", TheOptions().moments, wrong);
}

}  // namespace
