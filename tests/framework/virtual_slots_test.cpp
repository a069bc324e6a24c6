// Host, library and board code are built apart and meet in these tables, so
// every operation has its fixed place.
#include "tests/support/virtual_slot.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <string>

#include "framework/diag_array.h"
#include "framework/diag_func.h"
#include "framework/diag_multi_dev_test.h"
#include "framework/diag_param.h"
#include "framework/diag_register_device.h"
#include "framework/diag_test.h"
#include "framework/diag_value.h"
#include "framework/fmt_output.h"
#include "framework/timed_test.h"

namespace {

using SendLogArgs = void(unsigned int, const char*, va_list) const;
using HandleMsg = void(CInMsg&, COutMsg&);

template <class Class>
size_t SlotOfVariadicSendLog() {
    void (Class::*send)(unsigned int, const char*, ...) const = &Class::SendLog;
    return SlotOf(send);
}

class CWithPlainMember {
  public:
    void Plain() {}
};

TEST(VirtualSlots, APlainMemberHasNone) {
    EXPECT_EQ(SlotOf<void()>(&CWithPlainMember::Plain), NOT_VIRTUAL);
}

TEST(VirtualSlots, ObjectsBeginBehindTheDestructors) {
    EXPECT_EQ(SlotOf<void()>(&CDiagObj::Reset), 2U);
    EXPECT_EQ(SlotOf<void(COutMsg&)>(&CDiagObj::Query), 3U);
}

TEST(VirtualSlots, MenusFollowObjects) {
    EXPECT_EQ(SlotOf<void()>(&CDiagMenu::Reset), 2U);
    EXPECT_EQ(SlotOf<void(COutMsg&)>(&CDiagMenu::Query), 3U);
    EXPECT_EQ(SlotOf<HandleMsg>(&CDiagMenu::HandleMsg), 4U);
    EXPECT_EQ(SlotOf<SendLogArgs>(&CDiagMenu::SendLog), 5U);
    EXPECT_EQ(SlotOfVariadicSendLog<CDiagMenu>(), 6U);
    EXPECT_EQ(SlotOf<void(CInMsg&)>(&CDiagMenu::ReceiveMail), 7U);
    EXPECT_EQ(SlotOf<void(CDiagMsg) const>(&CDiagMenu::SendMsg), 8U);
    EXPECT_EQ(SlotAfter<CDiagMenu>(), 9U);
}

TEST(VirtualSlots, CommandsAddInvoke) {
    EXPECT_EQ(SlotOf<HandleMsg>(&CDiagFunc::HandleMsg), 4U);
    EXPECT_EQ(SlotOfVariadicSendLog<CDiagFunc>(), 6U);
    EXPECT_EQ(SlotOf<HandleMsg>(&CDiagFunc::Invoke), 9U);
    EXPECT_EQ(SlotAfter<CDiagFunc>(), 10U);
}

TEST(VirtualSlots, DevicesAddTheirHooksAndTheirTestStatus) {
    EXPECT_EQ(SlotOf<void()>(&CDiagDevice::Reset), 2U);
    EXPECT_EQ(SlotOfVariadicSendLog<CDiagDevice>(), 6U);
    EXPECT_EQ(SlotOf<void(uint8_t*)>(&CDiagDevice::CauseInterrupts), 9U);
    EXPECT_EQ((SlotOf<bool(uint8_t*, msTime_t)>(&CDiagDevice::PollInterrupts)), 10U);
    EXPECT_EQ(SlotOf<void()>(&CDiagDevice::DevReset), 11U);
    EXPECT_EQ(SlotOf<void()>(&CDiagDevice::CountFailure), 12U);
    EXPECT_EQ(SlotOf<void(ETestStatus)>(&CDiagDevice::SetTestStatus), 13U);
    EXPECT_EQ(SlotAfter<CDiagDevice>(), 14U);
}

TEST(VirtualSlots, RegisterDevicesAddDumpsAndAccessors) {
    using Access = bool(diag_regdata_t*, diag_reg_st*, uint32_t);
    EXPECT_EQ(SlotOf<void(std::string)>(&CDiagRegisterDevice::showRegTable), 14U);
    EXPECT_EQ((SlotOf<bool(uint32_t, std::string)>(&CDiagRegisterDevice::dumpRegs)), 15U);
    EXPECT_EQ(SlotOf<Access>(&CDiagRegisterDevice::readRegEntry), 16U);
    EXPECT_EQ(SlotOf<Access>(&CDiagRegisterDevice::writeRegEntry), 17U);
    EXPECT_EQ(SlotAfter<CDiagRegisterDevice>(), 18U);
}

TEST(VirtualSlots, TheBaseOfTestsAddsNone) {
    EXPECT_EQ(SlotOf<void()>(&CDiagTestBase::Reset), 2U);
    EXPECT_EQ(SlotOfVariadicSendLog<CDiagTestBase>(), 6U);
    EXPECT_EQ(SlotOf<bool()>(&CDiagTestBase::ProgressCb), NOT_VIRTUAL);
    EXPECT_EQ(SlotAfter<CDiagTestBase>(), 9U);
}

template <class Test>
class TestSlots : public testing::Test {};
using TestKinds = testing::Types<CDiagTest, CDiagMultiDevTest>;
TYPED_TEST_SUITE(TestSlots, TestKinds);

TYPED_TEST(TestSlots, AreTheSameForBothKinds) {
    EXPECT_EQ(SlotOf<HandleMsg>(&TypeParam::HandleMsg), 4U);
    EXPECT_EQ(SlotOf<void(bool)>(&TypeParam::RequestStop), 9U);
    EXPECT_EQ(SlotOf<bool(CInMsg&)>(&TypeParam::TestSetup), 10U);
    EXPECT_EQ(SlotOf<ETestStatus(COutMsg&)>(&TypeParam::TestRun), 11U);
    EXPECT_EQ(SlotOf<void()>(&TypeParam::TestCleanup), 12U);
    EXPECT_EQ(SlotOf<HandleMsg>(&TypeParam::Run), 13U);
    EXPECT_EQ(SlotOf<bool() const>(&TypeParam::IsStopReq), 14U);
    EXPECT_EQ(SlotOf<void()>(&TypeParam::LockDevices), 15U);
    EXPECT_EQ(SlotOf<void()>(&TypeParam::ReleaseDevices), 16U);
    EXPECT_EQ(SlotAfter<TypeParam>(), 17U);
}

TEST(VirtualSlots, DeclaringADeviceIsNoVirtualOperation) {
    EXPECT_EQ(
        (SlotOf<void(const std::string&, EDevLockType, bool)>(&CDiagMultiDevTest::AddDeviceAccess)),
        NOT_VIRTUAL);
}

TEST(VirtualSlots, TimedTestsFollowMultiDeviceTests) {
    EXPECT_EQ(SlotOfVariadicSendLog<CTimedTest>(), 6U);
    EXPECT_EQ(SlotOf<bool(CInMsg&)>(&CTimedTest::TestSetup), 10U);
    EXPECT_EQ(SlotOf<ETestStatus(COutMsg&)>(&CTimedTest::TestRun), 11U);
    EXPECT_EQ(SlotOf<void()>(&CTimedTest::TestCleanup), 12U);
    EXPECT_EQ(SlotOf<bool(CInMsg&)>(&CTimedTest::TestSetupEx), 17U);
    EXPECT_EQ((SlotOf<void(COutMsg&, EResCode)>(&CTimedTest::TestResultEx)), 18U);
    EXPECT_EQ(SlotOf<bool()>(&CTimedTest::TestExecute), 19U);
    EXPECT_EQ(SlotAfter<CTimedTest>(), 20U);
}

TEST(VirtualSlots, ParametersAddNone) {
    EXPECT_EQ(SlotOf<void(COutMsg&)>(&CDiagParam::Query), 3U);
    EXPECT_EQ(SlotAfter<CDiagParam>(), 9U);
}

TEST(VirtualSlots, ValuesAddSetAndGet) {
    EXPECT_EQ(SlotOf<void(COutMsg&)>(&CDiagValueBase::Query), 3U);
    EXPECT_EQ(SlotAfter<CDiagValueBase>(), 9U);
    EXPECT_EQ(SlotOf<HandleMsg>(&CDiagValue<std::string>::HandleMsg), 4U);
    EXPECT_EQ(SlotOf<void(const std::string&)>(&CDiagValue<std::string>::Set), 9U);
    EXPECT_EQ(SlotOf<std::string()>(&CDiagValue<std::string>::Get), 10U);
    EXPECT_EQ(SlotOf<void(const unsigned char&)>(&CDiagMemValue<unsigned char>::Set), 9U);
    EXPECT_EQ(SlotOf<unsigned char()>(&CDiagMemValue<unsigned char>::Get), 10U);
    EXPECT_EQ(SlotAfter<CDiagMemValue<unsigned char>>(), 11U);
}

TEST(VirtualSlots, ArraysAddSetGetAndTheStep) {
    using Array = CDiagArray<unsigned char>;
    EXPECT_EQ(SlotOf<void(COutMsg&)>(&CDiagArrayBase::Query), 3U);
    EXPECT_EQ(SlotAfter<CDiagArrayBase>(), 9U);
    EXPECT_EQ(SlotOf<HandleMsg>(&Array::HandleMsg), 4U);
    EXPECT_EQ((SlotOf<void(uint64_t, const unsigned char&)>(&Array::Set)), 9U);
    EXPECT_EQ(SlotOf<unsigned char(uint64_t)>(&Array::Get), 10U);
    EXPECT_EQ((SlotOf<bool(uint64_t*, uint64_t)>(&Array::IncAddr)), 11U);
    EXPECT_EQ(SlotAfter<CDiagAddrArray<unsigned char>>(), 12U);
}

TEST(VirtualSlots, FormattedOutputTakesCharactersAndFlushes) {
    EXPECT_EQ(SlotOf<bool(char)>(&IFmtOutput::putCh), 2U);
    EXPECT_EQ(SlotOf<bool()>(&IFmtOutput::flush), 3U);
    EXPECT_EQ((SlotOf<int(const char*, va_list)>(&IFmtOutput::vprintf)), NOT_VIRTUAL);
    EXPECT_EQ(SlotAfter<CFmtString>(), 4U);
}

}  // namespace
