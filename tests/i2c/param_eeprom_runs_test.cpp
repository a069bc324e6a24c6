// A thousand runs of each command on one device, failures among them: none
// leaves anything behind for the next one.
#include <gmock/gmock.h>

#include "tests/i2c/param_eeprom_test.h"

namespace {

constexpr size_t RUNS = 1000;

class ParamEepromRuns : public CParamEepromTest {
  protected:
    // Runs a command that fails at its `index`-th transfer.
    template <class Run>
    CAnswer FailedAt(size_t index, Run&& run) {
        m_bus.FailAt(m_bus.Xfers().size() + index);
        CAnswer answer = run();
        m_bus.FailWhen({});
        return answer;
    }
};

TEST_F(ParamEepromRuns, AreAllAlike) {
    MountParam();
    const std::vector<CTable> tables = {
        CompactTable(), ExtendedTable(), {.modules = {{}, {.part = "A\tB", .regs = {{1, 2}}}, {}}}};
    const std::string missing = (m_folder / "none.xml").string();
    const std::string broken = File("<t><signature>", "broken.xml");
    const std::string no_table = File("<t><signature>1</signature></t>", "no_table.xml");
    for (size_t run = 0; run < RUNS; ++run) {
        SCOPED_TRACE(run);
        Forget();
        const CTable& table = tables[run % tables.size()];
        const Bytes image = ImageOf(table);
        const std::string file = File(table);
        // The failures come first, each in every seventh run.
        switch (run % 7) {
            case 0:
                ASSERT_EQ(Program(missing).bytes, Bytes{FAIL});
                ASSERT_EQ(Check(missing).bytes, Bytes{FAIL});
                break;
            case 1:
                ASSERT_EQ(Program(broken).bytes, Bytes{FAIL});
                ASSERT_EQ(Check(no_table).bytes, Bytes{FAIL});
                break;
            case 2:
                ASSERT_EQ(FailedAt(2 * (run % 20) + 1, [&] { return Program(file); }).bytes,
                          Bytes{FAIL});
                break;
            case 3:
                ASSERT_EQ(FailedAt(0, [&] { return Erase(); }).bytes, Bytes{SUCCESS});
                break;
            case 4:
                ASSERT_EQ(Send(Command("prog-param-eeprom"), MSG_CALL, uint8_t{0}).bytes,
                          Bytes{FAIL});
                break;
            default:
                break;
        }
        ASSERT_EQ(Program(file).bytes, Bytes{SUCCESS});
        ASSERT_EQ(Memory(0, image.size()), image);
        ASSERT_EQ(Check(file).bytes, CheckAnswer(SUCCESS, 3, WordAt(image, 0)));
        if (run % 7 == 5) {
            ASSERT_EQ(FailedAt(run % 20, [&] { return Check(file); }).Code(), FAIL);
            ASSERT_EQ(Check(file).Code(), SUCCESS);
        }
        ASSERT_EQ(Erase().bytes, Bytes{SUCCESS});
        ASSERT_EQ(Memory(0, image.size()), Bytes(image.size(), 0xFF));
        ASSERT_EQ(Check(file).Code(), FAIL);
    }
}

}  // namespace
