// The three commands on an EEPROM whose words are stored low byte first: the same
// words and the same checksum, and the path left alone.
#include <algorithm>

#include "i2c/param_eeprom_check_cmd.h"
#include "i2c/param_eeprom_erase_cmd.h"
#include "i2c/param_eeprom_program_cmd.h"
#include "tests/i2c/param_eeprom_test.h"

namespace {

// A command with swapped words.
template <class Base>
class CSwapped : public Base {
  public:
    explicit CSwapped(CDiagParamEepromDevice* dev)
        : CParamEepromCmd("swapped", "with swapped words", true, dev),
          Base("swapped", "with swapped words", true, dev) {}
};

class ParamEepromSwapped : public CParamEepromTest {
  protected:
    ParamEepromSwapped() { MountParamBehindSwitch(); }

    template <class Base, class... Args>
    CAnswer Run(const Args&... args) {
        CSwapped<Base> command(&Device());
        return Send(command, MSG_CALL, args...);
    }
    // An image as it is stored with the bytes of every word exchanged.
    static Bytes Exchanged(Bytes image) {
        for (size_t i = 0; i < image.size(); i += 4) {
            std::reverse(image.begin() + static_cast<std::ptrdiff_t>(i),
                         image.begin() + static_cast<std::ptrdiff_t>(i) + 4);
        }
        return image;
    }
    const CTable m_table = CompactTable();
    const Bytes m_image = ImageOf(m_table);
};

TEST_F(ParamEepromSwapped, IsProgrammedWithTheSameWordsAndChecksum) {
    EXPECT_EQ(Run<CParamEepromCmdWrite>(File(m_table)).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, m_image.size()), Exchanged(m_image));
    EXPECT_EQ(Calls(), VerifiedCalls(WordOrderOf(m_table)));
}

TEST_F(ParamEepromSwapped, IsCheckedWithoutAPath) {
    Store(Exchanged(m_image));
    EXPECT_EQ(Run<CParamEepromCmdCheck>(File(m_table)).bytes,
              CheckAnswer(SUCCESS, 3, WordAt(m_image, 0)));
    EXPECT_EQ(Calls(), ReadCalls(WordOrderOf(m_table)));
    Store(m_image);
    EXPECT_EQ(Run<CParamEepromCmdCheck>(File(m_table)).Code(), FAIL);
}

TEST_F(ParamEepromSwapped, IsErasedByItsOwnLength) {
    Store(Exchanged(m_image));
    EXPECT_EQ(Run<CParamEepromCmdErase>().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, m_image.size()), Bytes(m_image.size(), 0xFF));
    EXPECT_EQ(Calls().size(), 34U);
    Store(m_image);
    EXPECT_EQ(Run<CParamEepromCmdErase>().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, m_image.size()), m_image);
}

}  // namespace
