#include "boards/sim/sim_mux.h"

#include <gtest/gtest.h>

#include "tests/boards/sim/sim_test.h"

namespace {

TEST(SimMuxParts, AreThoseOfTheFamily) {
    struct CExpected {
        const char* name;
        unsigned int channels;
        ESimMuxKind kind;
        uint8_t power_on;
    };
    const CExpected expected[] = {
        {"pca9540", 2, SIM_MUX_ENABLE_BIT, 0x00}, {"pca9542", 2, SIM_MUX_ENABLE_BIT, 0x00},
        {"pca9543", 2, SIM_MUX_BIT_MASK, 0x00},   {"pca9544", 4, SIM_MUX_ENABLE_BIT, 0x00},
        {"pca9545", 4, SIM_MUX_BIT_MASK, 0x00},   {"pca9546", 4, SIM_MUX_BIT_MASK, 0x00},
        {"pca9547", 8, SIM_MUX_ENABLE_BIT, 0x08}, {"pca9548", 8, SIM_MUX_BIT_MASK, 0x00},
    };
    ASSERT_EQ(SimMuxParts().size(), std::size(expected));
    for (const CExpected& want : expected) {
        const sim_mux_part_t* part = FindSimMuxPart(want.name);
        ASSERT_NE(part, nullptr) << want.name;
        EXPECT_EQ(part->channels, want.channels) << want.name;
        EXPECT_EQ(part->kind, want.kind) << want.name;
        EXPECT_EQ(part->power_on, want.power_on) << want.name;
    }
    EXPECT_EQ(FindSimMuxPart("pca9549"), nullptr);
}

class SimMux : public CSimTest {
  protected:
    // A mux at 0x70 with one memory per channel, at 0x50 + channel.
    CSimMux& AddPopulated(const char* part) {
        CSimMux& mux = AddMux(part, 0x70);
        for (unsigned int ch = 0; ch < mux.Channels(); ++ch) {
            AddAt24(mux.Channel(ch), "24c02", static_cast<uint8_t>(0x50 + ch));
        }
        return mux;
    }
    // The channels whose memory answers, as bits.
    unsigned int Open(unsigned int channels) {
        unsigned int open = 0;
        for (unsigned int ch = 0; ch < channels; ++ch) {
            if (Answers(static_cast<uint8_t>(0x50 + ch))) {
                open |= 1U << ch;
            }
        }
        return open;
    }
};

TEST_F(SimMux, OpensTheChannelsOfItsPowerOnValue) {
    for (const sim_mux_part_t& part : SimMuxParts()) {
        CSimMux mux(part, 0x70);
        AddAt24(mux.Channel(0), "24c02", 0x50);
        const bool open = std::string(part.name) == "pca9547";
        EXPECT_EQ(mux.Start(0x50, false), open) << part.name;
    }
}

// Every value of the control register of every part, against the data sheets'
// channel tables in their own words.
TEST_F(SimMux, OpensChannelsByEnableBitOrByMask) {
    for (const sim_mux_part_t& part : SimMuxParts()) {
        CSimBus bus("bus", "", BUS_HZ);
        CSimMux& mux = bus.Segment().Add(std::make_unique<CSimMux>(part, 0x70));
        for (unsigned int ch = 0; ch < mux.Channels(); ++ch) {
            AddMux(mux.Channel(ch), "pca9548", static_cast<uint8_t>(0x60 + ch));
        }
        for (unsigned int value = 0; value < 256; ++value) {
            unsigned int expected = 0;
            if (part.kind == SIM_MUX_BIT_MASK) {
                expected = value & ((1U << part.channels) - 1);
            } else {
                const unsigned int enable = part.channels == 8 ? 8 : 4;
                const unsigned int channel = value % enable;
                if ((value & enable) != 0 && channel < part.channels) {
                    expected = 1U << channel;
                }
            }
            ASSERT_TRUE(bus.smb_send_byte(-1, 0x70, static_cast<uint8_t>(value)));
            unsigned int open = 0;
            for (unsigned int ch = 0; ch < part.channels; ++ch) {
                if (bus.smb_write_quick(-1, static_cast<uint8_t>(0x60 + ch))) {
                    open |= 1U << ch;
                }
            }
            ASSERT_EQ(open, expected) << part.name << " " << value;
        }
    }
}

TEST_F(SimMux, ReadsItsControlRegisterBack) {
    AddMux("pca9547", 0x70);
    EXPECT_EQ(Read(0x70, 1), CData{0x08});
    EXPECT_TRUE(Write(0x70, {0x0D}));
    EXPECT_EQ(Read(0x70, 2), (CData{0x0D, 0x0D}));
}

TEST_F(SimMux, ReadsBitsThatDoNotExistAsZero) {
    AddMux("pca9547", 0x70);
    AddMux("pca9545", 0x71);
    AddMux("pca9543", 0x72);
    for (const uint8_t addr : CData{0x70, 0x71, 0x72}) {
        EXPECT_TRUE(Write(addr, {0xFF}));
    }
    EXPECT_EQ(Read(0x70, 1), CData{0x0F});
    EXPECT_EQ(Read(0x71, 1), CData{0x0F});
    EXPECT_EQ(Read(0x72, 1), CData{0x03});
}

TEST_F(SimMux, KeepsTheLastOfSeveralBytes) {
    AddPopulated("pca9548");
    EXPECT_TRUE(Write(0x70, {0x01, 0x02, 0x04}));
    EXPECT_EQ(Open(8), 0x04U);
}

TEST_F(SimMux, ClosesAllChannelsByZero) {
    AddPopulated("pca9547");
    EXPECT_EQ(Open(8), 0x01U);
    EXPECT_TRUE(Write(0x70, {0x00}));
    EXPECT_EQ(Open(8), 0x00U);
}

TEST_F(SimMux, SelectsAtTheStopConditionOnly) {
    CSimMux mux(*FindSimMuxPart("pca9548"), 0x70);
    AddAt24(mux.Channel(0), "24c02", 0x50);
    EXPECT_TRUE(mux.Start(0x70, false));
    EXPECT_TRUE(mux.WriteByte(0x01));
    EXPECT_FALSE(mux.Start(0x50, false));  // a repeated start: not yet
    EXPECT_TRUE(mux.Start(0x70, true));
    EXPECT_EQ(mux.ReadByte(), 0x01);
    EXPECT_FALSE(mux.Start(0x50, false));
    mux.Stop();
    EXPECT_TRUE(mux.Start(0x50, false));
}

TEST_F(SimMux, ClosesAtTheStopConditionOnly) {
    CSimMux mux(*FindSimMuxPart("pca9547"), 0x70);
    AddAt24(mux.Channel(0), "24c02", 0x50);
    EXPECT_TRUE(mux.Start(0x70, false));
    EXPECT_TRUE(mux.WriteByte(0x00));
    EXPECT_TRUE(mux.Start(0x50, false));
    mux.Stop();
    EXPECT_FALSE(mux.Start(0x50, false));
}

TEST_F(SimMux, PassesTheStopConditionToTheChannelItCloses) {
    CSimMux mux(*FindSimMuxPart("pca9547"), 0x70);
    CSimAt24& chip = AddAt24(mux.Channel(0), "24c02", 0x50);
    mux.Start(0x70, false);
    mux.WriteByte(0x00);
    mux.Start(0x50, false);
    mux.WriteByte(0x10);
    mux.WriteByte(0xA5);
    mux.Stop();
    EXPECT_EQ(BytesOf(chip.Memory().Path())[0x10], 0xA5);
}

TEST_F(SimMux, HasDownstreamChipsAnswerLikeUpstreamOnes) {
    CSimMux& mux = AddMux("pca9547", 0x70);
    AddAt24(mux.Channel(3), "24c02", 0x50, Counting(256));
    EXPECT_TRUE(Write(0x70, {0x0B}));
    EXPECT_EQ(Read(0x50, {0x20}, 3), (CData{0x20, 0x21, 0x22}));
    EXPECT_TRUE(Write(0x50, {0x20}, {0x99}));
    m_bus.WaitMs(5);
    EXPECT_EQ(Read(0x50, {0x20}, 2), (CData{0x99, 0x21}));
}

TEST_F(SimMux, GivesTheWiredAndOfTwoOpenChannelsWithOneAddress) {
    CSimMux& mux = AddMux("pca9548", 0x70);
    AddAt24(mux.Channel(0), "24c02", 0x50, CData(256, 0b1100'1111));
    AddAt24(mux.Channel(1), "24c02", 0x50, CData(256, 0b1111'1010));
    EXPECT_TRUE(Write(0x70, {0x03}));
    EXPECT_EQ(Read(0x50, {0x00}, 1), CData{0b1100'1010});
    EXPECT_TRUE(Write(0x70, {0x01}));
    EXPECT_EQ(Read(0x50, {0x00}, 1), CData{0b1100'1111});
}

TEST_F(SimMux, SharesTheWireWithAnUpstreamChipOfTheSameAddress) {
    CSimMux& mux = AddMux("pca9547", 0x70);
    CSimAt24& upstream = AddAt24("24c02", 0x50, CData(256, 0x0F));
    CSimAt24& downstream = AddAt24(mux.Channel(0), "24c02", 0x50, CData(256, 0x3C));
    EXPECT_EQ(Read(0x50, {0x00}, 1), CData{0x0C});
    EXPECT_TRUE(Write(0x50, {0x00}, {0x77}));
    EXPECT_EQ(BytesOf(upstream.Memory().Path())[0], 0x77);
    EXPECT_EQ(BytesOf(downstream.Memory().Path())[0], 0x77);
}

TEST_F(SimMux, ReachesThroughNestedMuxes) {
    CSimMux& outer = AddMux("pca9547", 0x70);
    CSimMux& middle = AddMux(outer.Channel(2), "pca9548", 0x71);
    CSimMux& inner = AddMux(middle.Channel(7), "pca9544", 0x72);
    AddAt24(inner.Channel(1), "24c02", 0x50, Counting(256));

    EXPECT_FALSE(Answers(0x71));
    EXPECT_TRUE(Write(0x70, {0x0A}));
    EXPECT_FALSE(Answers(0x72));
    EXPECT_TRUE(Write(0x71, {0x80}));
    EXPECT_FALSE(Answers(0x50));
    EXPECT_TRUE(Write(0x72, {0x05}));
    EXPECT_EQ(Read(0x50, {0x42}, 1), CData{0x42});

    EXPECT_TRUE(Write(0x70, {0x00}));
    EXPECT_FALSE(Answers(0x50));
    // What lies behind a closed channel keeps its selection.
    EXPECT_TRUE(Write(0x70, {0x0A}));
    EXPECT_EQ(Read(0x50, {0x42}, 1), CData{0x42});
}

}  // namespace
