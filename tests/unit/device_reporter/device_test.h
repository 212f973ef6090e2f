// What all tests of the device sources have in common.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "support/recorded_log.h"

namespace device_tests {

using testing::ElementsAre;
using testing::IsEmpty;

/// Records the log. Every heap of the process is intact at the end of each test.
class DeviceTest : public testing::Test {
protected:
    void TearDown() override {
        std::vector<HANDLE> heaps(64);
        heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
        for (HANDLE heap : heaps) {
            EXPECT_TRUE(HeapValidate(heap, /*dwFlags=*/0, /*lpMem=*/nullptr));
        }
    }

    /// The lines so far, each as "log 3 text(Function)".
    std::vector<std::string> Log() const { return timeline.Texts(); }

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
};

}  // namespace device_tests
