// The optimisation component's version, read from real version resources.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reporters/report_popup_block_info.h"
#include "simulation/fakes/heap.h"
#include "simulation/fakes/version_info.h"
#include "simulation/simulated_machine.h"
#include "support/grouping_locale.h"
#include "support/recorded_log.h"
#include "unit/reporters/version_calls.h"

namespace {

using Texts = std::vector<std::string>;

class AppVersion : public testing::Test {
protected:
    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
};

TEST_F(AppVersion, IsTheProductVersionAndNotTheFileVersion) {
    const VersionCalls calls(timeline, L"component_1_2_3_4.exe");
    EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "1.2.3.4");
    EXPECT_EQ(timeline.Texts(),
              (Texts{"GetFileVersionInfoSizeW", "GetFileVersionInfoW", "VerQueryValueW"}));
}

TEST_F(AppVersion, HasUngroupedPartsUpTo65535WhateverTheGlobalLocale) {
    const VersionCalls calls(timeline, L"component_65535.exe");
    const test_support::GroupingLocale grouping;
    EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "65535.65534.32768.10000");
}

TEST_F(AppVersion, IsEmptyWithoutTheExecutable) {
    const VersionCalls calls(timeline, L"no_such_component.exe");
    EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "");
    EXPECT_EQ(timeline.Texts(), Texts{"GetFileVersionInfoSizeW"});
}

TEST_F(AppVersion, IsEmptyWhenTheSizeIsZero) {
    VersionCalls calls(timeline, L"component_1_2_3_4.exe");
    calls.Fail("GetFileVersionInfoSizeW");
    EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "");
    EXPECT_EQ(timeline.Texts(), Texts{"GetFileVersionInfoSizeW"});
}

TEST_F(AppVersion, IsEmptyWhenTheResourceCannotBeRead) {
    VersionCalls calls(timeline, L"component_1_2_3_4.exe");
    calls.Fail("GetFileVersionInfoW");
    EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "");
    EXPECT_EQ(timeline.Texts(), (Texts{"GetFileVersionInfoSizeW", "GetFileVersionInfoW"}));
}

TEST_F(AppVersion, IsEmptyWhenTheRootBlockCannotBeRead) {
    VersionCalls calls(timeline, L"component_1_2_3_4.exe");
    calls.Fail("VerQueryValueW");
    EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "");
    EXPECT_EQ(timeline.Texts(),
              (Texts{"GetFileVersionInfoSizeW", "GetFileVersionInfoW", "VerQueryValueW"}));
}

TEST_F(AppVersion, IsEmptyAndLoggedWhenMemoryRunsOut) {
    constexpr DWORD kSize = 7919;  // A size that nothing else asks for.
    VersionCalls calls(timeline, L"component_1_2_3_4.exe");
    calls.StateSize(kSize);
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    simulation::InstallHeapFakes(redirection);
    const simulation::MallocFailure memory(kSize);
    EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "");
    EXPECT_EQ(memory.Count(), 1u);
    EXPECT_EQ(timeline.Texts(),
              (Texts{"GetFileVersionInfoSizeW",
                     "log 4 infoData null(ReportPopUpBlockInfo::GetAppVersion)"}));
}

// --- A root block that is not what it should be ---

TEST(AppVersionFromAnOddRootBlock, IsEmpty) {
    simulation::Machine described;
    described.fileVersions
        [L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\"
         L"TuneBoostCenter.exe"] = {{5, 6, 7, 8}, {1, 2, 3, 4}};
    simulation::SimulatedMachine machine(GetModuleHandleW(nullptr), described,
                                         {simulation::InstallVersionInfoFakes});
    simulation::World& world = machine.world();
    for (const simulation::FaultVariant variant :
         {simulation::FaultVariant::NullResult, simulation::FaultVariant::SuccessWithNothing,
          simulation::FaultVariant::ShortSize}) {
        world.faults.FailCall("VerQueryValueW", 1, sizeof(VS_FIXEDFILEINFO) - 1, variant);
        EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "") << simulation::VariantName(variant);
        EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "1.2.3.4");
    }
    EXPECT_TRUE(world.faults.Missed().empty());
}

}  // namespace
