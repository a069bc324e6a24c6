#include "framework/diag_param.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/bytes.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;

TEST(Param, IsANodeThatKnowsItsTypes) {
    const CDiagParam param(VT_UINT16 | VF_HEX, "reg", "register number", PT_IN | PT_OPTIONAL);
    EXPECT_EQ(param.GetNodeType(), TPARAM);
    EXPECT_STREQ(param.GetName(), "reg");
    EXPECT_STREQ(param.GetDescription(), "register number");
    EXPECT_EQ(param.GetValueType(), 0x13);
    EXPECT_EQ(param.GetParamType(), 0x10);
}

TEST(Param, DescribesItselfByValueTypeThenParameterType) {
    struct CCase {
        uint8_t vt;
        uint8_t pt;
    };
    for (const CCase& c :
         {CCase{VT_UINT8, PT_IN}, CCase{VT_STRING, PT_IN | PT_OPTIONAL}, CCase{0x17, PT_OUT}}) {
        CDiagParam param(c.vt, "p", "", c.pt);
        COutMsg out;
        param.Query(out);
        EXPECT_THAT(PayloadOf(out), ElementsAre(c.vt, c.pt));
    }
}

TEST(Param, AnswersAQueryWithItsDescription) {
    CDiagParam param(VT_STRING, "file", "XML file", PT_IN | PT_OPTIONAL);
    EXPECT_THAT(Send(param, MSG_QUERY).bytes, ElementsAre(MSG_SUCCESS, VT_STRING, 0x10));
}

}  // namespace
