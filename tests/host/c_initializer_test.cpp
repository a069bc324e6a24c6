// Arrays in C source, as xxd -i FILE writes them.
#include <gtest/gtest.h>

#include "host/image_file.h"
#include "host/usage_error.h"

namespace {

using CBytes = std::vector<uint8_t>;

std::string Refusal(const std::string& text) {
    try {
        ImageOf(text, "x.h");
    } catch (const CUsageError& e) {
        return e.what();
    }
    return "taken";
}

}  // namespace

TEST(CInitializer, GivesTheBytesBetweenItsBraces) {
    const CBytes bytes{0x92, 0x11, 0x0B, 0x01};
    for (const char* text :
         {"unsigned char module_bin[] = {\n  0x92, 0x11,\n  0x0b, 0x01\n};\n"
          "unsigned int module_bin_len = 4;\n",
          "{ 0x92, 0x11, 0x0b, 0x1 };", "{0x92,0x11,0x0B,0X01}\n",
          "#include <stdint.h>\n\nstatic const uint8_t SPD[4] = { 0x92, 0x11,\n0x0b, 0x01, };\n",
          "{\n0x92,\n0x11,\n\n0x0b,\n0x01,\n}\n;\n"}) {
        EXPECT_EQ(ImageOf(text, "x.h"), bytes) << text;
    }
}

TEST(CInitializer, NamesABraceThatIsNotClosed) {
    EXPECT_EQ(Refusal("unsigned char spd[] = {\n"), "x.h:1: expected bytes and } behind the {");
    EXPECT_EQ(Refusal("{ 0x92,\n0x11,\n"), "x.h:2: expected bytes and } behind the {");
}

TEST(CInitializer, NamesALengthThatIsNotThatOfTheBytes) {
    EXPECT_EQ(Refusal("unsigned char b[] = {\n0x92, 0x11\n};\nunsigned int b_len = 3;\n"),
              "x.h:4: a length of 3, but 2 bytes stand between the braces");
}

TEST(CInitializer, NamesWhatFollowsIt) {
    const std::string refusal = ": expected nothing behind the bytes but their length";
    EXPECT_EQ(Refusal("{ 0x92 };\n0x11\n"), "x.h:2" + refusal);
    EXPECT_EQ(Refusal("{ 0x92 }, { 0x11 }\n"), "x.h:1" + refusal);
    EXPECT_EQ(Refusal("unsigned char a[] = { 0x92 };\nunsigned char b[] = { 0x11 };\n"),
              "x.h:2" + refusal);
    EXPECT_EQ(Refusal("{ 0x92 };\nint length = many;\n"), "x.h:2" + refusal);
}

// In C 92 is decimal, 010 octal, and a name or a comment may be anything.
TEST(CInitializer, NamesWhatIsNotHexadecimal) {
    for (const std::string word : {"92", "010", "'A'", "SIZE", "/*", "{", "0x", "0x111"}) {
        EXPECT_EQ(Refusal("{\n0x11, " + word + "\n};\n"),
                  "x.h:2: \"" + word + "\": expected a byte as 0x92, as between braces");
    }
    EXPECT_EQ(Refusal("{ 0x92,, 0x11 };\n"), "x.h:1: expected a byte before the comma");
}

TEST(CInitializer, IsNoneInTheTextBesideBytes) {
    EXPECT_EQ(ImageOf("00000000: 3d7b 7d3d  ={}=\n", "x"), (CBytes{'=', '{', '}', '='}));
    EXPECT_EQ(ImageOf("000000 3d 7b 7d 3d  >={}=<\n000004\n", "x"), (CBytes{'=', '{', '}', '='}));
}
