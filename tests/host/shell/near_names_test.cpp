#include "host/shell/near_names.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> NAMES = {"probe", "trans", "chk-dev", "ls", "set-sw-mode"};

TEST(NearNames, DifferInOneLetter) {
    EXPECT_THAT(NearNames("prbe", NAMES), ElementsAre("probe"));
    EXPECT_THAT(NearNames("proobe", NAMES), ElementsAre("probe"));
    EXPECT_THAT(NearNames("prube", NAMES), ElementsAre("probe"));
    EXPECT_THAT(NearNames("porbe", NAMES), ElementsAre("probe"));
    EXPECT_THAT(NearNames("sl", NAMES), ElementsAre("ls"));
    EXPECT_THAT(NearNames("puobe", NAMES), ElementsAre("probe"));
    EXPECT_THAT(NearNames("puebe", NAMES), IsEmpty());
}

TEST(NearNames, MayDifferInTwoLettersWhenTheyAreLong) {
    EXPECT_THAT(NearNames("set-sv-mod", NAMES), ElementsAre("set-sw-mode"));
    EXPECT_THAT(NearNames("setswmode", NAMES), ElementsAre("set-sw-mode"));
    EXPECT_THAT(NearNames("setswmod", NAMES), IsEmpty());
}

TEST(NearNames, AreTheSameInUpperCase) {
    EXPECT_THAT(NearNames("PROBE", NAMES), ElementsAre("probe"));
    EXPECT_THAT(NearNames("ctrl", {"CTRL", "CTRL2"}), ElementsAre("CTRL", "CTRL2"));
}

TEST(NearNames, MayBeginWithTheWord) {
    EXPECT_THAT(NearNames("set", NAMES), ElementsAre("set-sw-mode"));
    EXPECT_THAT(NearNames("T", {"temp", "conf", "tlow"}), ElementsAre("temp", "tlow"));
    EXPECT_THAT(NearNames("cha", {"channel", "chan"}), ElementsAre("chan", "channel"));
    EXPECT_THAT(NearNames("probes-all", NAMES), IsEmpty());
}

TEST(NearNames, AreFewAndTheNearestFirst) {
    EXPECT_THAT(NearNames("channel", {"chanel0", "channel0", "channel1", "channel2", "channel0"}),
                ElementsAre("channel0", "channel1", "channel2"));
}

TEST(NearNames, AreNoneForASingleLetterOrNothing) {
    EXPECT_THAT(NearNames("x", {"a", "ab"}), IsEmpty());
    EXPECT_THAT(NearNames("", {"a"}), IsEmpty());
    EXPECT_THAT(NearNames("probe", {}), IsEmpty());
}

TEST(NearNames, AreOfferedAsAQuestion) {
    EXPECT_EQ(DidYouMean("prbe", NAMES), "did you mean probe?");
    EXPECT_EQ(DidYouMean("ch", {"ch0", "ch1"}), "did you mean ch0 or ch1?");
    EXPECT_EQ(DidYouMean("ch", {"ch0", "ch1", "ch2"}), "did you mean ch0, ch1 or ch2?");
    EXPECT_EQ(DidYouMean("nothing", NAMES), "");
}

}  // namespace
