#include "boards/chips/mux_part.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "boards/sim/sim_mux.h"

TEST(MuxPart, KnowsTheWholeFamily) {
    std::vector<std::string> names;
    for (const mux_part_t& part : MuxParts()) {
        names.emplace_back(part.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"pca9540", "pca9542", "pca9543", "pca9544",
                                               "pca9545", "pca9546", "pca9547", "pca9548"}));
    EXPECT_EQ(FindMuxPart("pca9549"), nullptr);
}

// The control registers as the data sheets print them.
TEST(MuxPart, SelectsOneChannelByTheEnableBit) {
    EXPECT_EQ(FindMuxPart("pca9540")->ControlFor(0x01), 0x04);
    EXPECT_EQ(FindMuxPart("pca9540")->ControlFor(0x02), 0x05);
    EXPECT_EQ(FindMuxPart("pca9542")->ControlFor(0x02), 0x05);
    EXPECT_EQ(FindMuxPart("pca9544")->ControlFor(0x08), 0x07);
    EXPECT_EQ(FindMuxPart("pca9547")->ControlFor(0x01), 0x08);
    EXPECT_EQ(FindMuxPart("pca9547")->ControlFor(0x80), 0x0F);
    EXPECT_EQ(FindMuxPart("pca9547")->ControlFor(0), 0x00);
}

TEST(MuxPart, SelectsAnySetByTheMask) {
    EXPECT_EQ(FindMuxPart("pca9543")->ControlFor(0x03), 0x03);
    EXPECT_EQ(FindMuxPart("pca9545")->ControlFor(0x09), 0x09);
    EXPECT_EQ(FindMuxPart("pca9546")->ControlFor(0x0F), 0x0F);
    EXPECT_EQ(FindMuxPart("pca9548")->ControlFor(0xA5), 0xA5);
}

TEST(MuxPart, HasNoControlForWhatItCannotOpen) {
    for (const mux_part_t& part : MuxParts()) {
        EXPECT_EQ(part.ControlFor(1U << part.channels), std::nullopt) << part.name;
        EXPECT_EQ(part.ControlFor(3).has_value(), part.kind == MUX_BIT_MASK) << part.name;
    }
}

TEST(MuxPart, ReadsBackWhatItWrote) {
    for (const mux_part_t& part : MuxParts()) {
        for (uint32_t open = 0; open <= part.AllChannels(); ++open) {
            if (const auto control = part.ControlFor(open)) {
                EXPECT_EQ(part.OpenChannels(*control), open) << part.name;
            }
        }
    }
}

TEST(MuxPart, TellsInterruptsFromChannels) {
    EXPECT_EQ(FindMuxPart("pca9545")->OpenChannels(0xA2), 0x2U);
    EXPECT_EQ(FindMuxPart("pca9545")->Interrupting(0xA2), 0xAU);
    EXPECT_EQ(FindMuxPart("pca9544")->OpenChannels(0x96), 0x4U);
    EXPECT_EQ(FindMuxPart("pca9544")->Interrupting(0x96), 0x9U);
    EXPECT_EQ(FindMuxPart("pca9543")->Interrupting(0x30), 0x3U);
    EXPECT_EQ(FindMuxPart("pca9548")->Interrupting(0xF0), 0U);
    // Where nothing is said of the upper bits they mean nothing.
    EXPECT_EQ(FindMuxPart("pca9547")->OpenChannels(0xF0), 0U);
}

// The driver's table and the simulated chips were written apart; they must
// agree, or one of them is wrong.
TEST(MuxPart, AgreesWithTheSimulatedChips) {
    for (const mux_part_t& part : MuxParts()) {
        const sim_mux_part_t* sim = FindSimMuxPart(part.name);
        ASSERT_NE(sim, nullptr) << part.name;
        EXPECT_EQ(sim->channels, part.channels) << part.name;
        EXPECT_EQ(sim->kind == SIM_MUX_BIT_MASK, part.kind == MUX_BIT_MASK) << part.name;
    }
}
