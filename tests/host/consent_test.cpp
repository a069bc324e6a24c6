#include "host/consent.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <thread>

#include "framework/consent.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Somebody who gives one answer to everything.
class Consent : public testing::Test {
  protected:
    CConsent::CAsk Answering(bool answer) {
        return [this, answer](const std::string& what) {
            m_asked.push_back(what);
            return answer;
        };
    }

    std::vector<std::string> m_asked;
};

TEST_F(Consent, IsTheAnswerOfWhoeverIsAsked) {
    {
        const CConsent consent(Answering(true));
        EXPECT_TRUE(AllowedByOperator("write to 0x50"));
    }
    {
        const CConsent consent(Answering(false));
        EXPECT_FALSE(AllowedByOperator("write to 0x51"));
    }
    EXPECT_THAT(m_asked, ElementsAre("write to 0x50", "write to 0x51"));
}

TEST_F(Consent, IsAskedForOnceForEachText) {
    const CConsent consent(Answering(true));
    EXPECT_TRUE(AllowedByOperator("write to 0x50"));
    EXPECT_TRUE(AllowedByOperator("write to 0x51"));
    EXPECT_TRUE(AllowedByOperator("write to 0x50"));
    EXPECT_THAT(m_asked, ElementsAre("write to 0x50", "write to 0x51"));
}

TEST_F(Consent, RemembersANoToo) {
    const CConsent consent(Answering(false));
    EXPECT_FALSE(AllowedByOperator("write to 0x50"));
    EXPECT_FALSE(AllowedByOperator("write to 0x50"));
    EXPECT_THAT(m_asked, ElementsAre("write to 0x50"));
}

TEST_F(Consent, IsForgottenWithTheCommand) {
    for (int command = 0; command < 2; ++command) {
        const CConsent consent(Answering(true));
        EXPECT_TRUE(AllowedByOperator("write to 0x50"));
    }
    EXPECT_THAT(m_asked, ElementsAre("write to 0x50", "write to 0x50"));
}

TEST_F(Consent, HoldsForAllThatOneCommandRuns) {
    const CConsent repeat(Answering(true));
    for (int run = 0; run < 3; ++run) {
        const CConsent consent(Answering(true));
        EXPECT_TRUE(AllowedByOperator("write to 0x50"));
    }
    EXPECT_THAT(m_asked, ElementsAre("write to 0x50"));
}

TEST_F(Consent, IsRefusedWhereNobodyRunsACommand) {
    EXPECT_FALSE(AllowedByOperator("write to 0x50"));
}

TEST_F(Consent, IsRefusedToALineOfAScriptAlsoWhenAnOperatorStartedIt) {
    const CConsent source(Answering(true));
    EXPECT_TRUE(AllowedByOperator("write to 0x50"));
    {
        const CConsent line(nullptr);
        EXPECT_FALSE(AllowedByOperator("write to 0x50"));
        EXPECT_FALSE(AllowedByOperator("write to 0x51"));
    }
    EXPECT_TRUE(AllowedByOperator("write to 0x51"));
    EXPECT_THAT(m_asked, ElementsAre("write to 0x50", "write to 0x51"));
}

TEST_F(Consent, IsRefusedToOtherThreads) {
    const CConsent consent(Answering(true));
    bool allowed = true;
    std::thread job([&] { allowed = AllowedByOperator("write to 0x50"); });
    job.join();
    EXPECT_FALSE(allowed);
    EXPECT_THAT(m_asked, IsEmpty());
}

// In a process of its own: it cannot be taken back.
TEST_F(Consent, ForceAllowsEverythingAndAsksNobody) {
    constexpr int AS_IT_SHOULD_BE = 17;
    EXPECT_EXIT(
        {
            CConsent::GrantAll();
            const bool in_a_script = AllowedByOperator("write to 0x50");
            const CConsent consent(Answering(false));
            const bool at_the_prompt = AllowedByOperator("write to 0x50");
            std::exit(in_a_script && at_the_prompt && m_asked.empty() ? AS_IT_SHOULD_BE : 1);
        },
        testing::ExitedWithCode(AS_IT_SHOULD_BE), "");
}

}  // namespace
