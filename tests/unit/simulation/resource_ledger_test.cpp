#include "simulation/resource_ledger.h"

#include <gmock/gmock.h>

#include <sstream>

namespace simulation {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string TextOf(const ResourceLedger& ledger) {
    std::ostringstream text;
    text << ledger;
    return text.str();
}

TEST(ResourceLedger, NamesWhatWasNotGivenBack) {
    ResourceLedger ledger;
    ledger.Acquire(ResourceKind::Printer, "Fax");
    EXPECT_THAT(TextOf(ledger), HasSubstr("printer 0x"));
    EXPECT_THAT(TextOf(ledger), HasSubstr("(Fax) was not given back"));
}

TEST(ResourceLedger, NeverGivesAHandleTwice) {
    ResourceLedger ledger;
    void* const first = ledger.Acquire(ResourceKind::RegistryKey);
    ledger.Release(ResourceKind::RegistryKey, first);
    EXPECT_NE(ledger.Acquire(ResourceKind::RegistryKey), first);
}

TEST(ResourceLedger, RecordsASecondRelease) {
    ResourceLedger ledger;
    void* const key = ledger.Acquire(ResourceKind::RegistryKey);
    ledger.Release(ResourceKind::RegistryKey, key);
    EXPECT_FALSE(ledger.Release(ResourceKind::RegistryKey, key));
    EXPECT_THAT(ledger.Errors(), ElementsAre(HasSubstr("was released twice")));
    EXPECT_FALSE(ledger.Balanced());
}

TEST(ResourceLedger, RecordsTheReleaseOfSomethingNeverHandedOut) {
    ResourceLedger ledger;
    int stranger = 0;
    EXPECT_FALSE(ledger.Release(ResourceKind::HeapBlock, &stranger));
    EXPECT_THAT(ledger.Errors(), ElementsAre(HasSubstr("released but never handed out")));
}

TEST(ResourceLedger, RecordsAReleaseAsTheWrongKind) {
    ResourceLedger ledger;
    void* const token = ledger.Acquire(ResourceKind::Token);
    EXPECT_FALSE(ledger.Release(ResourceKind::Printer, token));
    EXPECT_EQ(ledger.CountOpen(ResourceKind::Token), 1u);
    EXPECT_EQ(ledger.Errors().size(), 1u);
}

TEST(ResourceLedger, ExpectsAValueBackAsOftenAsItWasEntered) {
    ResourceLedger ledger;
    int module = 0;
    ledger.Adopt(ResourceKind::ModuleReference, &module);
    ledger.Adopt(ResourceKind::ModuleReference, &module);
    EXPECT_TRUE(ledger.Release(ResourceKind::ModuleReference, &module));
    EXPECT_FALSE(ledger.Balanced());
    EXPECT_TRUE(ledger.Release(ResourceKind::ModuleReference, &module));
    EXPECT_TRUE(ledger.Balanced()) << ledger;
    EXPECT_EQ(ledger.CountAcquired(ResourceKind::ModuleReference), 2u);
}

}  // namespace
}  // namespace simulation
