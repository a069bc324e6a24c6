// Names of siblings.
#include "boards/devicetree/sibling_names.h"

#include <gtest/gtest.h>

#include "framework/diag_menu.h"

TEST(SiblingNames, CountFromTwo) {
    CSiblingNames names;
    EXPECT_TRUE(names.Take("spd-2"));
    EXPECT_EQ(names.TakeUnique("spd"), "spd");
    EXPECT_EQ(names.TakeUnique("spd"), "spd-3");
    EXPECT_EQ(names.TakeUnique("spd"), "spd-4");
    EXPECT_EQ(names.TakeUnique("fru"), "fru");
}

TEST(SiblingNames, AreTakenOnce) {
    CSiblingNames names;
    EXPECT_TRUE(names.Take("spd"));
    EXPECT_FALSE(names.Take("spd"));
    EXPECT_EQ(names.TakeUnique("spd"), "spd-2");
    EXPECT_FALSE(names.Take("spd-2"));
}

TEST(SiblingNames, KeepTheNumberThatIsAskedForWhileItIsFree) {
    CSiblingNames names;
    EXPECT_EQ(names.TakeNumbered("mux", 5), 5U);
    EXPECT_EQ(names.TakeNumbered("mux", 0), 0U);
    EXPECT_EQ(names.TakeNumbered("mux", 5), 1U);
    EXPECT_EQ(names.TakeNumbered("mux", 2), 2U);
    EXPECT_EQ(names.TakeNumbered("mux", 0), 3U);
    EXPECT_EQ(names.TakeNumbered("mux", 0), 4U);
    EXPECT_EQ(names.TakeNumbered("mux", 0), 6U);
    EXPECT_FALSE(names.Take("mux-6"));
}

TEST(SiblingNames, KnowTheChildrenThatWereThereBefore) {
    CDiagMenu menu(TMENU, "menu", "");
    menu.AddChild(new CDiagMenu(TMENU, "probe", ""), CDiagObj::NO_SORT);
    CTreeNames names;
    EXPECT_EQ(names.Below(menu).TakeUnique("probe"), "probe-2");
    EXPECT_EQ(names.Below(menu).TakeUnique("probe"), "probe-3");
    CDiagMenu other(TMENU, "other", "");
    EXPECT_EQ(names.Below(other).TakeUnique("probe"), "probe");
}
