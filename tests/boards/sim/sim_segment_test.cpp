#include "boards/sim/sim_segment.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

// Answers one address with one byte and notes what it sees.
class CNotingChip : public ISimChip {
  public:
    CNotingChip(uint8_t addr, uint8_t answer, bool acks_data)
        : m_addr(addr), m_answer(answer), m_acks_data(acks_data) {}

    const std::string& Notes() const { return m_notes; }

    bool Start(uint8_t addr, bool) override {
        m_notes += 'S';
        return addr == m_addr;
    }
    bool WriteByte(uint8_t) override {
        m_notes += 'w';
        return m_acks_data;
    }
    uint8_t ReadByte() override {
        m_notes += 'r';
        return m_answer;
    }
    void Stop() override { m_notes += 'P'; }

  private:
    const uint8_t m_addr;
    const uint8_t m_answer;
    const bool m_acks_data;
    std::string m_notes;
};

class SimSegment : public testing::Test {
  protected:
    CNotingChip& Add(uint8_t addr, uint8_t answer = 0xFF, bool acks_data = true) {
        return m_segment.Add(std::make_unique<CNotingChip>(addr, answer, acks_data));
    }
    CSimSegment m_segment;
};

TEST_F(SimSegment, WithoutChipsAcknowledgesNothingAndReadsHigh) {
    EXPECT_FALSE(m_segment.Start(0x50, false));
    EXPECT_FALSE(m_segment.WriteByte(0x00));
    EXPECT_EQ(m_segment.ReadByte(), 0xFF);
    m_segment.Stop();
}

TEST_F(SimSegment, OnlyTheAddressedChipGetsBytesButAllSeeTheConditions) {
    const CNotingChip& one = Add(0x50);
    const CNotingChip& two = Add(0x51);
    EXPECT_TRUE(m_segment.Start(0x51, false));
    m_segment.WriteByte(0x12);
    m_segment.Stop();
    EXPECT_EQ(one.Notes(), "SP");
    EXPECT_EQ(two.Notes(), "SwP");
}

TEST_F(SimSegment, ReadsTheWiredAndOfTwoChipsAtOneAddress) {
    Add(0x50, 0b1100'1111);
    Add(0x50, 0b1111'1010);
    EXPECT_TRUE(m_segment.Start(0x50, true));
    EXPECT_EQ(m_segment.ReadByte(), 0b1100'1010);
}

TEST_F(SimSegment, OneAcknowledgeOfTwoIsEnough) {
    const CNotingChip& refusing = Add(0x50, 0xFF, false);
    const CNotingChip& taking = Add(0x50, 0xFF, true);
    EXPECT_TRUE(m_segment.Start(0x50, false));
    EXPECT_TRUE(m_segment.WriteByte(0x12));
    EXPECT_EQ(refusing.Notes(), "Sw");
    EXPECT_EQ(taking.Notes(), "Sw");
}

TEST_F(SimSegment, NoAcknowledgeOfAnyIsNone) {
    Add(0x50, 0xFF, false);
    EXPECT_TRUE(m_segment.Start(0x50, false));
    EXPECT_FALSE(m_segment.WriteByte(0x12));
}

TEST_F(SimSegment, ARepeatedStartAddressesAnewWithoutAStop) {
    const CNotingChip& one = Add(0x50, 0x11);
    const CNotingChip& two = Add(0x51, 0x22);
    m_segment.Start(0x50, false);
    m_segment.WriteByte(0x12);
    m_segment.Start(0x51, true);
    EXPECT_EQ(m_segment.ReadByte(), 0x22);
    EXPECT_EQ(one.Notes(), "SwS");
    EXPECT_EQ(two.Notes(), "SSr");
}

TEST_F(SimSegment, NobodyTakesPartAfterAStop) {
    const CNotingChip& chip = Add(0x50, 0x11);
    m_segment.Start(0x50, true);
    m_segment.Stop();
    EXPECT_EQ(m_segment.ReadByte(), 0xFF);
    EXPECT_EQ(chip.Notes(), "SP");
}

}  // namespace
