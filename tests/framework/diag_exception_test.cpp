#include "framework/diag_exception.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/thrown_text.h"

namespace {

TEST(DiagException, CarriesItsFormattedText) {
    const CDiagException e("Failed to read memory at %04X (%s)", 0x2AU, "no acknowledge");
    EXPECT_STREQ(e.what(), "Failed to read memory at 002A (no acknowledge)");
}

TEST(DiagException, LeavesPercentSignsOfItsArgumentsAlone) {
    const CDiagException e("%s", "100% %s %n");
    EXPECT_STREQ(e.what(), "100% %s %n");
}

TEST(DiagException, KeepsLongTextsWhole) {
    const std::string text(5000, 'q');
    const CDiagException e("<%s>", text.c_str());
    EXPECT_EQ(e.what(), "<" + text + ">");
}

TEST(DiagException, IsThrownByValueAndCaughtByReference) {
    try {
        throw CDiagException("step %d", 3);
    } catch (CDiagException& e) {
        EXPECT_STREQ(e.what(), "step 3");
    }
}

TEST(DiagException, SaysTheSameInACopy) {
    const CDiagException original("%d of %d", 2, 3);
    const CDiagException copy = original;
    EXPECT_STREQ(copy.what(), "2 of 3");
    EXPECT_STREQ(original.what(), "2 of 3");
}

TEST(DiagAssert, LetsATrueConditionPass) {
    const int ports = 2;
    EXPECT_NO_THROW(DIAG_ASSERT(ports == 2));
}

TEST(DiagAssert, NamesFileLineAndCondition) {
    const void* pDev = nullptr;
    const int line = __LINE__ + 1;
    const std::string text = ThrownText([pDev] { DIAG_ASSERT(pDev != NULL); });
    EXPECT_EQ(text,
              std::string(__FILE__) + ":" + std::to_string(line) + " Assert failed (pDev != NULL)");
}

TEST(DiagAssert, EvaluatesItsConditionOnce) {
    int evaluated = 0;
    DIAG_ASSERT(++evaluated > 0);
    EXPECT_EQ(evaluated, 1);
}

}  // namespace
