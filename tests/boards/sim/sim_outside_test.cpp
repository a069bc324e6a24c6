#include "boards/sim/sim_outside.h"

#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "tests/support/request.h"

namespace {

using Bytes = std::vector<uint8_t>;

std::unique_ptr<CSimRegisters> Chip(const char* part_name) {
    const sim_register_part_t& part = *FindSimRegisterPart(part_name);
    return part.create(part, 0x20);
}

TEST(SimOutside, HasAValueForEachThing) {
    for (const sim_register_part_t& part : SimRegisterParts()) {
        const auto chip = part.create(part, 0x20);
        const auto menu = CreateOutsideMenu("chip", *chip);
        EXPECT_EQ(menu->GetDescription(), "outside of the " + std::string(part.name));
        ASSERT_EQ(menu->GetChildren().size(), part.outside.size()) << part.name;
        EXPECT_FALSE(part.outside.empty()) << part.name;
        for (const sim_outside_t& what : part.outside) {
            COutMsg query;
            NodeAt(*menu, what.name).Query(query);
            EXPECT_EQ(query.GetPayload()[0], what.vt) << part.name;
            EXPECT_EQ(query.GetPayload()[1], 0) << part.name;
        }
    }
}

TEST(SimOutside, IsPeekedAndPokedInTheValuesWidth) {
    CLogCapture log;
    const auto wide = Chip("pca9555");
    const auto menu = CreateOutsideMenu("chip", *wide);
    CDiagMenu& pins = NodeAt(*menu, "pins");
    EXPECT_EQ(Send(pins, MSG_POKEV, uint16_t{0xFDFE}).bytes, Bytes{0});
    EXPECT_EQ(Send(pins, MSG_PEEKV).bytes, (Bytes{0, 0xFD, 0xFE}));

    const auto narrow = Chip("adt7461");
    const auto temps = CreateOutsideMenu("chip", *narrow);
    EXPECT_EQ(Send(NodeAt(*temps, "remote-temp"), MSG_POKEV, uint8_t{90}).bytes, Bytes{0});
    EXPECT_EQ(Send(NodeAt(*temps, "remote-temp"), MSG_PEEKV).bytes, (Bytes{0, 90}));
    EXPECT_EQ(Send(NodeAt(*temps, "local-temp"), MSG_PEEKV).bytes, (Bytes{0, 31}));
}

}  // namespace
