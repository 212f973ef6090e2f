#include <gtest/gtest.h>

#include "standins/consent_store/consent_store_control.h"

namespace {

class ConsentStore : public testing::Test {
protected:
    void SetUp() override { ConsentStore_Reset(); }
    void TearDown() override { ConsentStore_Reset(); }
};

TEST_F(ConsentStore, AnswersEmptyUntilAnAnswerIsSet) {
    EXPECT_EQ(AgreementSign::IsAgreeClause(), "");
    ConsentStore_SetAnswer("1");
    EXPECT_EQ(AgreementSign::IsAgreeClause(), "1");
    EXPECT_EQ(AgreementSign::IsAgreeClause(), "1");
    ConsentStore_SetAnswer(nullptr);
    EXPECT_EQ(AgreementSign::IsAgreeClause(), "");
}

TEST_F(ConsentStore, GivesAnswersOneByOneAndKeepsTheLast) {
    const char* const answers[] = {"0", " 1", "1"};
    ConsentStore_SetAnswers(answers, 3);
    EXPECT_EQ(AgreementSign::IsAgreeClause(), "0");
    EXPECT_EQ(AgreementSign::IsAgreeClause(), " 1");
    EXPECT_EQ(AgreementSign::IsAgreeClause(), "1");
    EXPECT_EQ(AgreementSign::IsAgreeClause(), "1");
    ConsentStore_SetAnswers(nullptr, 0);
    EXPECT_EQ(AgreementSign::IsAgreeClause(), "");
}

TEST_F(ConsentStore, CountsTheQuestions) {
    EXPECT_EQ(ConsentStore_AskCount(), 0u);
    AgreementSign::IsAgreeClause();
    ConsentStore_SetAnswer("1");
    AgreementSign::IsAgreeClause();
    EXPECT_EQ(ConsentStore_AskCount(), 2u);
    ConsentStore_Reset();
    EXPECT_EQ(ConsentStore_AskCount(), 0u);
}

}  // namespace
