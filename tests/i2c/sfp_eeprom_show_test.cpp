// The command "show-eeprom-info".
#include <gmock/gmock.h>

#include <regex>

#include "tests/i2c/sfp_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SfpEepromShow : public CSfpEepromTest {
  protected:
    SfpEepromShow() { Store(ImageNamed("sfp_1g")); }

    // What stands behind the label of the vendor's name, to the end of the text.
    std::string ShownVendor() {
        m_log.Clear();
        EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
        const std::string printed = Printed();
        const std::string label = "                 Vendor_name[16]: ";
        const std::string next = "\n                     Transciever: ";
        const size_t first = printed.find(label) + label.size();
        return printed.substr(first, printed.find(next) - first);
    }
    void StoreVendor(const std::string& bytes) { Store(Around(20, bytes)); }

  private:
    static Bytes Around(size_t at, const std::string& bytes) {
        Bytes image = ImageNamed("sfp_1g");
        std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<ptrdiff_t>(at));
        return image;
    }
};

class SfpEepromOutput : public CSfpEepromTest, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(, SfpEepromOutput, testing::Values("sfp_1g", "sfp_10g"), NameOfText);

TEST_P(SfpEepromOutput, IsThatOfItsImage) {
    MountRecord(Sfp());
    Store(ImageNamed(GetParam()));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Printed(), ExpectedNamed(GetParam()));
}

TEST_F(SfpEepromShow, PrintsAModuleThatDoesNotAnswerAs0xFF) {
    MountRecord(Sfp());
    m_bus.FailAt(0);
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_EQ(Printed(), ExpectedNamed("sfp_unread"));
}

TEST_F(SfpEepromShow, PrintsWhatWasReadAndTheRestAs0xFF) {
    MountRecord(Sfp(64));
    m_bus.FailAt(1);
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    const std::string good = ExpectedNamed("sfp_1g");
    const std::string unread = ExpectedNamed("sfp_unread");
    const std::string border = "                      Options[2]: ";
    EXPECT_EQ(Printed(), good.substr(0, good.find(border)) + unread.substr(unread.find(border)));
}

TEST_F(SfpEepromShow, DoesNotJudgeTheCheckCodes) {
    MountRecord(Sfp());
    m_bus.At(63) ^= 0xFF;
    m_bus.At(95) ^= 0xFF;
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Printed(), HasSubstr("CC_BASE: 87\n"));
    EXPECT_THAT(Printed(), HasSubstr("CC_EXT: 40\n"));
    EXPECT_THAT(m_log.Texts(LW_ERR_TEST), IsEmpty());
}

TEST_F(SfpEepromShow, LabelsEveryFieldButTheUnallocatedOne) {
    MountRecord(Sfp());
    m_bus.At(62) = 0x5A;
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    const std::string printed = Printed();
    const std::regex label("  +[A-Z][A-Za-z0-9_-]*(\\[[0-9]+\\])?: ");
    EXPECT_EQ(std::distance(std::sregex_iterator(printed.begin(), printed.end(), label), {}), 30);
    EXPECT_THAT(printed, Not(HasSubstr("Unallocated")));
    EXPECT_THAT(printed, HasSubstr("Wavelength[2]: 03 52                         CC_BASE: 78\n"));
}

TEST_F(SfpEepromShow, PrintsEveryLineAtThePrintLevel) {
    MountRecord(Sfp());
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    ASSERT_THAT(Messages(), Not(IsEmpty()));
    for (const CLogCapture::Line& line : Messages()) {
        EXPECT_EQ(line.first, 0xB0U) << line.second;
    }
}

// The vendor's name, a text that ends at the first zero byte.

TEST_F(SfpEepromShow, AlignsTheNameOfTheVendorToTheRight) {
    MountRecord(Sfp());
    StoreVendor(std::string("ACME\0\0\0\0\0\0\0\0\0\0\0\0", 16));
    EXPECT_EQ(ShownVendor(), "                ACME");
    StoreVendor("SIXTEEN LETTERS!");
    EXPECT_EQ(ShownVendor(), "    SIXTEEN LETTERS!");
}

TEST_F(SfpEepromShow, ShowsNoNameWhenItBeginsWithAZeroByte) {
    MountRecord(Sfp());
    StoreVendor(std::string("\0CME", 4));
    EXPECT_EQ(ShownVendor(), std::string(20, ' '));
}

TEST_F(SfpEepromShow, GoesOnBehindTheFieldOfTheNameToTheFirstZeroByte) {
    MountRecord(Sfp());
    // The name, Transciever, Vendor_OUI and the first byte of Vendor_PN.
    StoreVendor(std::string("SIXTEEN LETTERS!tOUIP\0", 22));
    EXPECT_EQ(ShownVendor(), "SIXTEEN LETTERS!tOUIP");
}

TEST_F(SfpEepromShow, GoesOnToTheEndOfTheRecordWithoutAnyZeroByte) {
    MountRecord(Sfp());
    std::string rest;
    for (size_t at = 20; at < SIZE; ++at) {
        rest += static_cast<char>('!' + at % 90);
    }
    StoreVendor(rest);
    EXPECT_EQ(ShownVendor(), rest);
    EXPECT_EQ(ShownVendor().size(), 108U);
}

TEST_F(SfpEepromShow, PrintsBytesOfTheNameThatCannotBePrintedAsTheyAre) {
    MountRecord(Sfp());
    StoreVendor(std::string("\x01\x1B%s\n\x7F\x80\xFF\0", 9));
    EXPECT_EQ(ShownVendor(), std::string(12, ' ') + "\x01\x1B%s\n\x7F\x80\xFF");
}

// The path.

TEST_F(SfpEepromShow, OpensReadsPrintsAndCloses) {
    MountRecordBehindSwitch(Sfp(64));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+64", "RD 64+64", PRINTS, CLOSE));
}

TEST_F(SfpEepromShow, PrintsAndClosesAfterAFailedRead) {
    MountRecordBehindSwitch(Sfp(64));
    m_bus.FailAt(1);
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+64", "RD 64+64",
                            "0x10 ERROR: Memory read failed (addr=00064 nBytes=64): no ack 1",
                            "0x10 ERROR: Error during EEPROM read! addr = 0x40 ", PRINTS, CLOSE));
}

TEST_F(SfpEepromShow, NeitherReadsNorPrintsWhenThePathCannotBeOpened) {
    MountRecordBehindSwitch(Sfp());
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, CANNOT_OPEN));
}

TEST_F(SfpEepromShow, FailsWhenThePathCannotBeClosedThoughItHasPrintedAll) {
    MountRecordBehindSwitch(Sfp());
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+128", PRINTS, CLOSE, CANNOT_CLOSE));
    EXPECT_EQ(Printed(), ExpectedNamed("sfp_1g"));
}

}  // namespace
