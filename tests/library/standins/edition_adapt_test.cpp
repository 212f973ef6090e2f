#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standins/edition_adapt/edition_adapt_control.h"

namespace {

using EditionAdapt::FeatureSwitch;

class EditionAdaptLibrary : public testing::Test {
protected:
    void SetUp() override { EditionAdapt_Reset(); }
    void TearDown() override { EditionAdapt_Reset(); }
};

TEST_F(EditionAdaptLibrary, KnowsTheDeviceListFeatureByDefault) {
    int value = 0;
    EXPECT_EQ(FeatureSwitch::GetInstance().QueryFeature("ReportDeviceList", value), 0);
    EXPECT_EQ(value, 3);
}

TEST_F(EditionAdaptLibrary, LeavesTheValueAloneForAnUnknownFeature) {
    int value = 42;
    EXPECT_NE(FeatureSwitch::GetInstance().QueryFeature("Unheard", value), 0);
    EXPECT_EQ(value, 42);
    EditionAdapt_ClearFeatures();
    EXPECT_NE(FeatureSwitch::GetInstance().QueryFeature("ReportDeviceList", value), 0);
    EXPECT_EQ(value, 42);
}

TEST_F(EditionAdaptLibrary, AnswersWithTheFeaturesThatWereSet) {
    EditionAdapt_SetFeature("ReportDeviceList", 2);
    EditionAdapt_SetFeature("Other", -1);
    int value = 0;
    EXPECT_EQ(FeatureSwitch::GetInstance().QueryFeature("ReportDeviceList", value), 0);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(FeatureSwitch::GetInstance().QueryFeature("Other", value), 0);
    EXPECT_EQ(value, -1);
}

TEST_F(EditionAdaptLibrary, StoresTheValueWhateverTheQueryResultIs) {
    EditionAdapt_SetQueryResult(7);
    int value = 0;
    EXPECT_EQ(FeatureSwitch::GetInstance().QueryFeature("ReportDeviceList", value), 7);
    EXPECT_EQ(value, 3);
}

TEST_F(EditionAdaptLibrary, ShelfSupportsExactlyItsProperty) {
    const ZedSoftShelf* const shelf = ZedSoftShelf::GetInstance();
    ASSERT_NE(shelf, nullptr);
    EXPECT_TRUE(shelf->IsSupportProperty("VRLoginGuide", "china"));
    EXPECT_FALSE(shelf->IsSupportProperty("VRLoginGuide", "China"));
    EXPECT_FALSE(shelf->IsSupportProperty("VRLogin", "china"));
    EXPECT_FALSE(shelf->IsSupportProperty("china", "VRLoginGuide"));

    EditionAdapt_SetShelfProperty("Colour", "red");
    EXPECT_TRUE(shelf->IsSupportProperty("Colour", "red"));
    EXPECT_FALSE(shelf->IsSupportProperty("VRLoginGuide", "china"));

    EditionAdapt_SetShelf(1, 0);
    EXPECT_FALSE(shelf->IsSupportProperty("Colour", "red"));
}

TEST_F(EditionAdaptLibrary, HasNoShelfWhenItIsNotInstalled) {
    EditionAdapt_SetShelf(0, 1);
    EXPECT_EQ(ZedSoftShelf::GetInstance(), nullptr);
    EditionAdapt_SetShelf(1, 1);
    EXPECT_NE(ZedSoftShelf::GetInstance(), nullptr);
}

TEST_F(EditionAdaptLibrary, TellsItsObserverOfCallsWithTheirArguments) {
    std::vector<std::string> calls;
    EditionAdapt_SetObserver(
        [](void* context, const char* operation, const char* name, const char* value) {
            static_cast<std::vector<std::string>*>(context)->push_back(
                std::string(operation) + " " + (name == nullptr ? "-" : name) + " " +
                (value == nullptr ? "-" : value));
        },
        &calls);
    int value = 0;
    FeatureSwitch::GetInstance().QueryFeature("ReportDeviceList", value);
    ZedSoftShelf::GetInstance()->IsSupportProperty("VRLoginGuide", "china");

    const std::vector<std::string> expected = {
        "FeatureSwitch::QueryFeature ReportDeviceList -",
        "ZedSoftShelf::GetInstance - -",
        "ZedSoftShelf::IsSupportProperty VRLoginGuide china",
    };
    EXPECT_EQ(calls, expected);
}

}  // namespace
