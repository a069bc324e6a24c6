// The numbers of the enumerations are part of the message encoding.
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>

#include "framework/diag_log_word.h"
#include "framework/diag_obj.h"
#include "framework/diag_types.h"

namespace {

template <class E>
void ExpectNumberedFrom(uint32_t first, std::initializer_list<E> enumerators) {
    static_assert(sizeof(E) == 4);
    uint32_t number = first;
    for (const E enumerator : enumerators) {
        EXPECT_EQ(static_cast<uint32_t>(enumerator), number);
        ++number;
    }
}

TEST(Enumerations, NodeTypesCountFromZero) {
    ExpectNumberedFrom<ENodeType>(0, {TNULL, TDMP, TSLOT, TMENU, TDEVICE, TVALUE, TARRAY_I,
                                      TARRAY_A, TFUNC, TPROC, TPARAM, TSCRIPT});
}

TEST(Enumerations, ParameterTypesAreInThenOut) {
    ExpectNumberedFrom<EParamType>(0, {PT_IN, PT_OUT});
}

TEST(Enumerations, AnOptionalArgumentIsMarkedByABitOfItsOwn) {
    EXPECT_EQ(PT_IN + PT_OPTIONAL, 0x10U);
}

TEST(Enumerations, ValueTypesCountFromZero) {
    ExpectNumberedFrom<EValueType>(0, {VT_INT8, VT_UINT8, VT_INT16, VT_UINT16, VT_INT32, VT_UINT32,
                                       VT_INT64, VT_UINT64, VT_STRING, VT_ENUM, VT_USERDEF});
}

TEST(Enumerations, TestStatusesCountFromZero) {
    ExpectNumberedFrom<ETestStatus>(0, {DS_UNTESTED, DS_DEVACC, DS_SETUP, DS_PROGRESS, DS_PASSED,
                                        DS_FAILED, DS_FAILED_NCUP, DS_ABORTED, DS_SKIPPED});
}

TEST(Enumerations, ResultCodesCountFromZero) {
    ExpectNumberedFrom<EResCode>(
        0, {MSG_SUCCESS, MSG_ERR_NORESP, MSG_ERR_FAIL, MSG_ERR_DEST, MSG_ERR_MSGTYPE,
            MSG_ERR_MSGLEN, MSG_ERR_READONLY, MSG_ERR_PARAM, MSG_ERR_ISRUN, MSG_ERR_NOTRUN,
            MSG_ERR_ABORTED, MSG_ERR_CANCELED, MSG_ERR_SLOTDOWN, MSG_SKIPPED});
}

TEST(Enumerations, TheRangeOfResultCodesEndsBeforeSkipped) {
    EXPECT_EQ(uint32_t{MSG_RC_FIRST}, 0U);
    EXPECT_EQ(uint32_t{MSG_RC_LAST}, 12U);
    EXPECT_LT(uint32_t{MSG_RC_LAST}, uint32_t{MSG_SKIPPED});
}

TEST(Enumerations, LogTypesCountFromOne) {
    ExpectNumberedFrom<ELogTypes>(1, {LOG_LT_ERR_TEST, LOG_LT_ERR_SYS, LOG_LT_ERR_SW, LOG_LT_WARN,
                                      LOG_LT_SYS, LOG_LT_INFO, LOG_LT_PROGRESS, LOG_LT_RESULT,
                                      LOG_LT_HW_DEBUG_BASE, LOG_LT_SW_DEBUG_BASE, LOG_LT_PRINT});
    EXPECT_EQ(uint32_t{LOG_LT_FIRST}, 1U);
    EXPECT_EQ(uint32_t{LOG_LT_LAST}, 11U);
}

TEST(Enumerations, MessageTypesCountFromZero) {
    ExpectNumberedFrom<EMsgType>(
        0, {MSG_NULL, MSG_REGSLOT, MSG_REGDONE, MSG_DISC, MSG_QUERY, MSG_PEEKV, MSG_POKEV, MSG_CALL,
            MSG_START, MSG_STOP, MSG_STARTED, MSG_PULSE, MSG_DONE, MSG_LOG, MSG_MAIL_SUBS, MSG_MAIL,
            MSG_REGCLONE, MSG_CLONE});
    EXPECT_EQ(MSG_TYPE_MASK, 0x3FFF);
}

TEST(Enumerations, LockTypesAreProtectThenAccess) {
    ExpectNumberedFrom<EDevLockType>(0, {DEV_LOCK_PROTECT, DEV_LOCK_ACCESS});
}

TEST(Enumerations, SortOrdersCountFromZero) {
    ExpectNumberedFrom<CDiagObj::ESortOrder>(
        0, {CDiagObj::NO_SORT, CDiagObj::SORT_BY_NAME, CDiagObj::SORT_BY_ID});
}

TEST(Enumerations, RegisterAccessesCountFromZero) {
    ExpectNumberedFrom<diag_regacc_et>(
        0, {DIAG_REGACC_NONE, DIAG_REGACC_RW, DIAG_REGACC_RO, DIAG_REGACC_WO, DIAG_REGACC_RC,
            DIAG_REGACC_W1C, DIAG_REGACC_W1T, DIAG_REGACC_W1S, DIAG_REGACC_DA});
}

TEST(LogWords, HoldTheTypeAboveTheLevel) {
    EXPECT_EQ(LW_ERR_TEST, 0x10U);
    EXPECT_EQ(LW_ERR_SYS, 0x20U);
    EXPECT_EQ(LW_ERR_SW, 0x30U);
    EXPECT_EQ(LW_WARN, 0x40U);
    EXPECT_EQ(LW_INFO, 0x60U);
    EXPECT_EQ(LW_RESULT, 0x80U);
    EXPECT_EQ(LW_PRINT, 0xB0U);
    EXPECT_EQ(LW_HW_TRACE, 0x9AU);
    EXPECT_EQ(LW_SW_TRACE, 0xA1U);
    EXPECT_EQ(LW_SW_DUMP, 0xA5U);
}

TEST(LogWords, AreTakenApartAsTheyWerePutTogether) {
    for (uint32_t type = LOG_LT_FIRST; type <= LOG_LT_LAST; ++type) {
        for (unsigned int level = 0; level < 16; ++level) {
            const unsigned int word = LogWord(static_cast<ELogTypes>(type), level);
            EXPECT_EQ(uint32_t{LogTypeOf(word)}, type);
            EXPECT_EQ(LogLevelOf(word), level);
        }
    }
}

}  // namespace
