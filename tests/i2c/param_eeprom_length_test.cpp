// How long images are: what the header says and how much is written.
#include "tests/i2c/param_eeprom_test.h"

namespace {

struct CLayout {
    const char* name;
    uint32_t signature;
    std::vector<size_t> pairs;  // per module
    uint32_t length;
};
class ParamEepromLength : public CParamEepromTest, public testing::WithParamInterface<CLayout> {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromLength,
                         testing::Values(CLayout{"OneCompactModule", 1, {3}, 88},
                                         CLayout{"OneCompactModuleWithoutPairs", 1, {0}, 64},
                                         CLayout{
                                             "OneExtendedModuleWithoutPairs", 0x56454C44, {0}, 56},
                                         CLayout{"TwoCompactModules", 1, {2, 0}, 124},
                                         CLayout{"TwoExtendedModules", 0x56454C44, {0, 2}, 108},
                                         CLayout{"NoSignature", 0, {0}, 64},
                                         CLayout{"NearlyTheExtendedSignature", 0x56454C45, {0}, 64},
                                         CLayout{"ManyModules", 1, {1, 0, 0, 5, 2, 0, 1}, 400}),
                         [](const auto& layout) { return layout.param.name; });

TEST_P(ParamEepromLength, StandsInTheHeader) {
    MountParam();
    CTable table = {.signature = GetParam().signature};
    for (const size_t count : GetParam().pairs) {
        table.modules.emplace_back();
        for (uint32_t i = 0; i < count; ++i) {
            table.modules.back().regs.emplace_back(4 * i, i << 24 | i);
        }
    }
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    const Bytes image = ImageOf(table);
    ASSERT_EQ(image.size(), GetParam().length);
    EXPECT_EQ(WordAt(Memory(8, 4), 0), GetParam().length);
    EXPECT_EQ(Memory(0, image.size()), image);
    EXPECT_EQ(Memory(image.size(), 64), CEepromBus::InitialBytes(image.size(), 64));
    EXPECT_EQ(Check(table).bytes, CheckAnswer(SUCCESS, 3, WordAt(image, 0)));
}

}  // namespace
