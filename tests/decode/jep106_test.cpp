#include "decode/jep106.h"

#include <gtest/gtest.h>

namespace {

TEST(Jep106, NamesMakersOfEveryBank) {
    struct CMaker {
        uint8_t continuations;
        uint8_t code;
        const char* text;
    };
    for (const auto& [continuations, code, text] :
         {CMaker{0x80, 0xCE, "Samsung (bank 1, code 0xce)"},
          CMaker{0x01, 0x98, "Kingston (bank 2, code 0x98)"},
          CMaker{0x02, 0x9E, "Corsair (bank 3, code 0x9e)"},
          CMaker{0x83, 0x0B, "Nanya Technology (bank 4, code 0x0b)"},
          CMaker{0x04, 0xB3, "Inphi (bank 5, code 0xb3)"},
          CMaker{0x85, 0x51, "Qimonda (bank 6, code 0x51)"},
          CMaker{0x86, 0x32, "Montage Technology (bank 7, code 0x32)"},
          CMaker{0x07, 0xEF, "Zentel Electronics (bank 8, code 0xef)"},
          CMaker{0x08, 0xD5, "Etron Technology (bank 9, code 0xd5)"},
          CMaker{0x89, 0xCD, "Longsys Electronics (bank 10, code 0xcd)"},
          CMaker{0x8A, 0x91, "CXMT (bank 11, code 0x91)"}}) {
        EXPECT_EQ(MakerText(continuations, code), text);
    }
}

TEST(Jep106, CodeIsOfItsBankAlone) {
    EXPECT_EQ(MakerText(0x80, 0xD5), "Integrated Silicon Solutions (bank 1, code 0xd5)");
    EXPECT_EQ(MakerText(0x07, 0xD5), "bank 8, code 0xd5");
    EXPECT_EQ(MakerText(0x89, 0xD5), "bank 10, code 0xd5");
}

TEST(Jep106, GivesTheCodesOfMakersItDoesNotKnow) {
    EXPECT_EQ(MakerText(0x80, 0x7C), "bank 1, code 0x7c");
    EXPECT_EQ(MakerText(0x7F, 0x98), "bank 128, code 0x98");
    // Samsung's code, in another bank
    EXPECT_EQ(MakerText(0x8C, 0xCE), "bank 13, code 0xce");
}

TEST(Jep106, NamesNoMakerWithWrongParity) {
    EXPECT_EQ(MakerText(0x80, 0x4E), "bank 1, code 0x4e, wrong parity in the code");
    EXPECT_EQ(MakerText(0x00, 0xCE), "bank 1, code 0xce, wrong parity in the bank's byte 0x00");
    EXPECT_EQ(MakerText(0x81, 0x4E), "bank 2, code 0x4e, wrong parity in the code");
}

TEST(Jep106, HasNoMakerInAnUnwrittenField) {
    EXPECT_EQ(MakerText(0x00, 0x00), "(none)");
    EXPECT_EQ(MakerText(0xFF, 0xFF), "(none)");
}

}  // namespace
