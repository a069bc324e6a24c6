#include "host/diag_tree.h"

#include <gtest/gtest.h>

namespace {

// root / i2c-0 / pca9547-0 / ch0 / spd, and a sibling of each.
class DiagTree : public testing::Test {
  protected:
    static CDiagObj* Add(CDiagObj* parent, const char* name) {
        auto* node = new CDiagObj(TMENU, name, "");
        parent->AddChild(node, CDiagObj::NO_SORT);
        return node;
    }

    CDiagObj m_root{TMENU, "board", ""};
    CDiagObj* m_bus = Add(&m_root, "i2c-0");
    CDiagObj* m_mux = Add(m_bus, "pca9547-0");
    CDiagObj* m_ch0 = Add(m_mux, "ch0");
    CDiagObj* m_spd = Add(m_ch0, "spd");
    CDiagObj* m_ch1 = Add(m_mux, "ch1");
    CDiagObj* m_mdio = Add(&m_root, "mdio");
};

TEST_F(DiagTree, HasOneRoot) {
    EXPECT_EQ(&RootOf(m_root), &m_root);
    EXPECT_EQ(&RootOf(*m_mdio), &m_root);
    const CDiagObj& deep = *m_spd;
    EXPECT_EQ(&RootOf(deep), &m_root);
}

TEST_F(DiagTree, NamesItsRootBySlashAlone) {
    EXPECT_EQ(PathOf(m_root), "/");
}

TEST_F(DiagTree, NamesNodesByThePathFromBelowTheRoot) {
    EXPECT_EQ(PathOf(*m_bus), "/i2c-0");
    EXPECT_EQ(PathOf(*m_spd), "/i2c-0/pca9547-0/ch0/spd");
}

TEST_F(DiagTree, FindsEveryNodeByItsPathFromAnywhere) {
    for (CDiagObj* node : {&m_root, m_bus, m_mux, m_ch0, m_spd, m_ch1, m_mdio}) {
        EXPECT_EQ(FindByPath(m_root, PathOf(*node)), node);
        EXPECT_EQ(FindByPath(*m_spd, PathOf(*node)), node);
    }
}

TEST_F(DiagTree, FindsNodesRelativeToAnother) {
    EXPECT_EQ(FindByPath(m_root, "mdio"), m_mdio);
    EXPECT_EQ(FindByPath(*m_bus, "pca9547-0/ch0/spd"), m_spd);
    EXPECT_EQ(FindByPath(*m_mux, "ch1"), m_ch1);
}

TEST_F(DiagTree, StaysWithADot) {
    EXPECT_EQ(FindByPath(*m_mux, "."), m_mux);
    EXPECT_EQ(FindByPath(*m_mux, "./ch0"), m_ch0);
    EXPECT_EQ(FindByPath(*m_mux, "ch0/./spd/."), m_spd);
    EXPECT_EQ(FindByPath(*m_mux, "/."), &m_root);
}

TEST_F(DiagTree, GoesUpWithTwoDots) {
    EXPECT_EQ(FindByPath(*m_ch0, ".."), m_mux);
    EXPECT_EQ(FindByPath(*m_ch0, "../ch1"), m_ch1);
    EXPECT_EQ(FindByPath(*m_spd, "../../../.."), &m_root);
    EXPECT_EQ(FindByPath(m_root, "i2c-0/../mdio"), m_mdio);
}

TEST_F(DiagTree, StaysAtTheRootWhenGoingAboveIt) {
    EXPECT_EQ(FindByPath(m_root, ".."), &m_root);
    EXPECT_EQ(FindByPath(*m_bus, "../../.."), &m_root);
    EXPECT_EQ(FindByPath(*m_spd, "/../../mdio"), m_mdio);
}

TEST_F(DiagTree, TakesSeveralSlashesForOne) {
    EXPECT_EQ(FindByPath(m_root, "i2c-0//pca9547-0///ch0"), m_ch0);
    EXPECT_EQ(FindByPath(*m_spd, "//mdio"), m_mdio);
    EXPECT_EQ(FindByPath(*m_spd, "//"), &m_root);
}

TEST_F(DiagTree, TakesASlashBehindTheLastName) {
    EXPECT_EQ(FindByPath(m_root, "i2c-0/"), m_bus);
    EXPECT_EQ(FindByPath(m_root, "/i2c-0/pca9547-0/"), m_mux);
}

TEST_F(DiagTree, FindsNothingUnderAnyOtherName) {
    for (const char* path : {"i2c-1", "/board", "i2c", "i2c-0/ch0", "I2C-0", "i2c-0 ", "mdio/x",
                             "i2c-0/none/..", "...", "/none"}) {
        EXPECT_EQ(FindByPath(m_root, path), nullptr) << path;
    }
}

TEST_F(DiagTree, FindsEveryNodeByItsId) {
    for (CDiagObj* node : {&m_root, m_bus, m_mux, m_ch0, m_spd, m_ch1, m_mdio}) {
        EXPECT_EQ(FindById(m_root, node->GetId()), node);
    }
}

TEST_F(DiagTree, FindsNothingByTheIdOfANodeElsewhere) {
    CDiagObj elsewhere(TMENU, "elsewhere", "");
    EXPECT_EQ(FindById(m_root, elsewhere.GetId()), nullptr);
    EXPECT_EQ(FindById(m_root, 0), nullptr);
    EXPECT_EQ(FindById(*m_mux, m_mdio->GetId()), nullptr);
    EXPECT_EQ(FindById(*m_mux, m_bus->GetId()), nullptr);
}

}  // namespace
