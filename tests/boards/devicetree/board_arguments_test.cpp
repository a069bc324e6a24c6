#include "boards/devicetree/board_arguments.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/thrown_text.h"

namespace {

CBoardArguments Parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "libmorva-board.so");
    return ParseBoardArguments(static_cast<int>(arguments.size()), arguments.data());
}

// Sets an environment variable, or takes it away, for a test.
class CVariable {
  public:
    CVariable(const char* name, const char* value) : m_name(name) {
        if (const char* before = std::getenv(name)) {
            m_before = before;
        }
        Set(value);
    }
    ~CVariable() { Set(m_before ? m_before->c_str() : nullptr); }
    CVariable(const CVariable&) = delete;
    CVariable& operator=(const CVariable&) = delete;

  private:
    void Set(const char* value) {
        if (value != nullptr) {
            ::setenv(m_name, value, 1);
        } else {
            ::unsetenv(m_name);
        }
    }

    const char* const m_name;
    std::optional<std::string> m_before;
};

}  // namespace

TEST(BoardArguments, NameTheBlobAndTheStateFolder) {
    const CBoardArguments arguments = Parse({"--sim", "x/board.dtb", "--state", "y"});
    EXPECT_EQ(arguments.blob, "x/board.dtb");
    EXPECT_EQ(arguments.state, "y");
}

TEST(BoardArguments, PutTheStateWhereTheEnvironmentSays) {
    const CVariable state("XDG_STATE_HOME", "/var/states");
    const CVariable home("HOME", "/home/tester");
    EXPECT_EQ(Parse({"--sim=x/board.dtb"}).state, "/var/states/morva-diags/board");
}

TEST(BoardArguments, PutTheStateIntoTheHomeFolderOtherwise) {
    const CVariable home("HOME", "/home/tester");
    {
        const CVariable none("XDG_STATE_HOME", nullptr);
        EXPECT_EQ(Parse({"--sim", "board.v2.dtb"}).state,
                  "/home/tester/.local/state/morva-diags/board.v2");
    }
    // Only an absolute path counts there.
    const CVariable relative("XDG_STATE_HOME", "states");
    EXPECT_EQ(Parse({"--sim", "board.dtb"}).state, "/home/tester/.local/state/morva-diags/board");
}

TEST(BoardArguments, NeedSomewhereToPutTheState) {
    const CVariable none("XDG_STATE_HOME", nullptr);
    const CVariable home("HOME", nullptr);
    EXPECT_EQ(ThrownText([] {
                  Parse({"--sim", "board.dtb"});
              }),
              "no folder for the contents of the simulated memories: set HOME or give --state DIR");
    EXPECT_EQ(Parse({"--sim", "board.dtb", "--state", "s"}).state, "s");
}

TEST(BoardArguments, MeanThisMachineOtherwise) {
    const CBoardArguments none = Parse({});
    EXPECT_EQ(none.kind, EBoardKind::DESCRIBED);
    EXPECT_EQ(none.blob, "");
    const CBoardArguments dtb = Parse({"--dtb", "x.dtb"});
    EXPECT_EQ(dtb.kind, EBoardKind::DESCRIBED);
    EXPECT_EQ(dtb.blob, "x.dtb");
    EXPECT_EQ(Parse({"--i2c"}).kind, EBoardKind::ADAPTERS);
    EXPECT_EQ(Parse({"--sim", "x.dtb", "--state", "s"}).kind, EBoardKind::SIMULATED);
}

TEST(BoardArguments, NameTheDevicesOfBuses) {
    const CBoardArguments arguments =
        Parse({"--bus", "/soc/i2c@1=/dev/i2c-3", "--dtb", "x.dtb", "--bus=/i2c@2=/dev/by=name"});
    using Buses = std::map<std::string, std::string>;
    EXPECT_EQ(arguments.buses, (Buses{{"/soc/i2c@1", "/dev/i2c-3"}, {"/i2c@2", "/dev/by=name"}}));
}

TEST(BoardArguments, SayHowABusIsNamed) {
    for (const char* wrong : {"i2c0=/dev/i2c-3", "/soc/i2c@1", "/soc/i2c@1=", "=", ""}) {
        EXPECT_EQ(ThrownText([wrong] {
                      Parse({"--bus", wrong});
                  }),
                  std::string("board arguments: --bus ") + wrong +
                      ": should be NODE=DEVICE, as in --bus /soc/i2c@118000=/dev/i2c-0");
    }
}

TEST(BoardArguments, GiveANodeOneBus) {
    EXPECT_EQ(ThrownText([] {
                  Parse({"--bus", "/i2c@1=/dev/i2c-0", "--bus", "/i2c@1=/dev/i2c-3"});
              }),
              "board arguments: --bus /i2c@1=/dev/i2c-3: the bus of /i2c@1 is /dev/i2c-0 already");
}

TEST(BoardArguments, RefuseWhatContradictsItself) {
    const std::vector<std::vector<const char*>> wrong = {
        {"--sim", "a.dtb", "--dtb", "b.dtb"},
        {"--sim", "a.dtb", "--i2c"},
        {"--sim", "a.dtb", "--bus", "/i2c@1=/dev/i2c-1"},
        {"--i2c", "--dtb", "b.dtb"},
        {"--i2c", "--bus", "/i2c@1=/dev/i2c-1"},
        {"--state", "s"},
        {"--dtb", "b.dtb", "--state", "s"},
        {"--dtb", ""},
        {"--sim", ""},
    };
    for (const auto& arguments : wrong) {
        EXPECT_EQ(ThrownText([&] { Parse(arguments); }).find("board arguments: "), 0U)
            << arguments[0];
    }
}

TEST(BoardArguments, RefuseWhatTheyDoNotKnow) {
    EXPECT_EQ(ThrownText([] { Parse({"--live"}); }).find("board arguments: "), 0U);
    EXPECT_EQ(ThrownText([] { Parse({"--sim"}); }).find("board arguments: "), 0U);
}

TEST(BoardArguments, ExplainThemselves) {
    const std::string help = ThrownText([] { Parse({"--help"}); });
    EXPECT_NE(help.find("--sim FILE"), std::string::npos) << help;
    EXPECT_NE(help.find("--state DIR"), std::string::npos) << help;
}
