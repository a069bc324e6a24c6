// What the tests of the "trans" command share.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "tests/i2c/bus_test.h"

class CTransTest : public CBusTest {
  protected:
    CAnswer Trans(const std::string& rdwr, const Bytes& numbers) {
        return Send(Command("trans"), MSG_CALL, rdwr, CNumbers{numbers});
    }

    // What the command writes to standard output itself.
    static std::string OutputOf(const std::function<void()>& work) {
        testing::internal::CaptureStdout();
        work();
        return testing::internal::GetCapturedStdout();
    }

    // `head` followed by the numbers first, first + 1, ...: `count` of them.
    static Bytes Counting(Bytes head, uint8_t first, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            head.push_back(static_cast<uint8_t>(first + i));
        }
        return head;
    }

    // All that was logged so far is exactly this, and no transfer took place.
    void ExpectRefusal(const CAnswer& reply, const CLines& lines) {
        EXPECT_EQ(reply.bytes, Bytes{FAIL});
        EXPECT_EQ(m_log.Lines(), lines);
        EXPECT_TRUE(m_bus.Seen().empty());
    }
};
