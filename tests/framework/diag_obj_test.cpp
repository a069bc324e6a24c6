#include "framework/diag_obj.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "framework/diag_exception.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Counts how many of its kind live and how often it is reset.
class CCountedNode : public CDiagObj {
  public:
    CCountedNode(const std::string& name, int& alive, int& resets)
        : CDiagObj(TMENU, name, ""), m_alive(alive), m_resets(resets) {
        ++m_alive;
    }
    ~CCountedNode() override { --m_alive; }
    void Reset() override {
        ++m_resets;
        CDiagObj::Reset();
    }

  private:
    int& m_alive;
    int& m_resets;
};

class CObjTree : public testing::Test {
  protected:
    CDiagObj* Add(const std::string& name, CDiagObj::ESortOrder order = CDiagObj::NO_SORT) {
        return Add(m_root, name, order);
    }
    CDiagObj* Add(CDiagObj& parent, const std::string& name,
                  CDiagObj::ESortOrder order = CDiagObj::NO_SORT) {
        auto* node = new CCountedNode(name, m_alive, m_resets);
        parent.AddChild(node, order);
        return node;
    }
    static std::vector<std::string> Names(const CDiagObj& parent) {
        std::vector<std::string> names;
        for (const CDiagObj* child : parent.GetChildren()) {
            names.emplace_back(child->GetName());
        }
        return names;
    }

    int m_alive = 0;
    int m_resets = 0;
    CDiagObj m_root{TMENU, "root", ""};
};

TEST_F(CObjTree, NodesKnowTheirTypeNameAndDescription) {
    const CDiagObj node(TDEVICE, "spd", "DIMM 0 SPD");
    EXPECT_EQ(node.GetNodeType(), TDEVICE);
    EXPECT_STREQ(node.GetName(), "spd");
    EXPECT_STREQ(node.GetDescription(), "DIMM 0 SPD");
    EXPECT_EQ(node.GetParent(), nullptr);
    EXPECT_THAT(node.GetChildren(), IsEmpty());
}

TEST_F(CObjTree, NodesHaveIdsOfTheirOwn) {
    std::set<unsigned int> ids{m_root.GetId()};
    for (int i = 0; i < 100; ++i) {
        ids.insert(Add("child")->GetId());
    }
    EXPECT_EQ(ids.size(), 101U);
}

TEST_F(CObjTree, NoNodeHasTheIdOfTheShell) {
    EXPECT_NE(m_root.GetId(), 0U);
    for (int i = 0; i < 100; ++i) {
        EXPECT_NE(Add("child")->GetId(), 0U);
    }
}

TEST_F(CObjTree, ChildrenKnowTheirParent) {
    CDiagObj* child = Add("child");
    CDiagObj* grandchild = Add(*child, "grandchild");
    EXPECT_EQ(child->GetParent(), &m_root);
    EXPECT_EQ(grandchild->GetParent(), child);
}

TEST_F(CObjTree, ChildrenKeepTheOrderOfTheirCreation) {
    for (const char* name : {"trans", "addr", "probe", "data9", "data11"}) {
        Add(name);
    }
    EXPECT_THAT(Names(m_root), ElementsAre("trans", "addr", "probe", "data9", "data11"));
}

TEST_F(CObjTree, ChildrenMayBeSortedByName) {
    for (const char* name : {"m", "z", "a", "n", "b"}) {
        Add(name, CDiagObj::SORT_BY_NAME);
    }
    EXPECT_THAT(Names(m_root), ElementsAre("a", "b", "m", "n", "z"));
}

TEST_F(CObjTree, ChildrenMayBeSortedById) {
    auto first = std::make_unique<CDiagObj>(TMENU, "first", "");
    auto second = std::make_unique<CDiagObj>(TMENU, "second", "");
    auto third = std::make_unique<CDiagObj>(TMENU, "third", "");
    ASSERT_LT(first->GetId(), second->GetId());
    ASSERT_LT(second->GetId(), third->GetId());
    m_root.AddChild(second.release(), CDiagObj::SORT_BY_ID);
    m_root.AddChild(third.release(), CDiagObj::SORT_BY_ID);
    m_root.AddChild(first.release(), CDiagObj::SORT_BY_ID);
    EXPECT_THAT(Names(m_root), ElementsAre("first", "second", "third"));
}

TEST_F(CObjTree, AParentDestroysItsChildrenAtAnyDepth) {
    {
        CDiagObj parent(TMENU, "parent", "");
        CDiagObj* child = Add(parent, "child");
        Add(*child, "grandchild");
        Add(parent, "sibling");
        EXPECT_EQ(m_alive, 3);
    }
    EXPECT_EQ(m_alive, 0);
}

TEST_F(CObjTree, FindsAChildByItsName) {
    Add("first");
    CDiagObj* second = Add("second");
    EXPECT_EQ(m_root.FindChild("second"), second);
}

TEST_F(CObjTree, FindsTheFirstOfTwoChildrenOfOneName) {
    CDiagObj* first = Add("port");
    Add("port");
    EXPECT_EQ(m_root.FindChild("port"), first);
}

TEST_F(CObjTree, FindsNoChildByAnyOtherName) {
    CDiagObj* child = Add("child");
    Add(*child, "grandchild");
    for (const char* name :
         {"", "chil", "child ", "Child", "grandchild", "root", "child/grandchild"}) {
        EXPECT_EQ(m_root.FindChild(name), nullptr) << name;
    }
}

TEST_F(CObjTree, HandsARemovedChildOver) {
    Add("first");
    CDiagObj* second = Add("second");
    Add("third");
    {
        const std::unique_ptr<CDiagObj> removed = m_root.RemoveChild(second->GetId());
        EXPECT_EQ(removed.get(), second);
        EXPECT_EQ(removed->GetParent(), nullptr);
        EXPECT_EQ(m_alive, 3);
    }
    EXPECT_EQ(m_alive, 2);
    EXPECT_THAT(Names(m_root), ElementsAre("first", "third"));
    EXPECT_EQ(m_root.FindChild("second"), nullptr);
}

TEST_F(CObjTree, RemovesTheChildWithTheIdAmongChildrenOfOneName) {
    CDiagObj* first = Add("port");
    CDiagObj* second = Add("port");
    m_root.RemoveChild(second->GetId());
    ASSERT_EQ(m_root.GetChildren().size(), 1U);
    EXPECT_EQ(m_root.GetChildren()[0], first);
}

TEST_F(CObjTree, RemovesNothingButItsOwnChildren) {
    CDiagObj* child = Add("child");
    CDiagObj* grandchild = Add(*child, "grandchild");
    EXPECT_EQ(m_root.RemoveChild(grandchild->GetId()), nullptr);
    EXPECT_EQ(m_root.RemoveChild(m_root.GetId()), nullptr);
    EXPECT_EQ(m_alive, 2);
    EXPECT_EQ(grandchild->GetParent(), child);
}

TEST_F(CObjTree, ARemovedChildKeepsItsOwnChildrenAndFindsANewParent) {
    CDiagObj* child = Add("child");
    Add(*child, "grandchild");
    CDiagObj other(TMENU, "other", "");
    other.AddChild(m_root.RemoveChild(child->GetId()).release(), CDiagObj::NO_SORT);
    EXPECT_EQ(child->GetParent(), &other);
    EXPECT_THAT(Names(*child), ElementsAre("grandchild"));
    EXPECT_EQ(m_alive, 2);
}

TEST_F(CObjTree, RefusesNoChildAtAll) {
    EXPECT_THROW(m_root.AddChild(nullptr, CDiagObj::NO_SORT), CDiagException);
    EXPECT_THAT(m_root.GetChildren(), IsEmpty());
}

TEST_F(CObjTree, RefusesItselfAsAChild) {
    EXPECT_THROW(m_root.AddChild(&m_root, CDiagObj::NO_SORT), CDiagException);
    EXPECT_THAT(m_root.GetChildren(), IsEmpty());
    EXPECT_EQ(m_root.GetParent(), nullptr);
}

TEST_F(CObjTree, RefusesAChildThatItHangsBelow) {
    CDiagObj* child = Add("child");
    CDiagObj* grandchild = Add(*child, "grandchild");
    EXPECT_THROW(grandchild->AddChild(&m_root, CDiagObj::NO_SORT), CDiagException);
    EXPECT_THAT(grandchild->GetChildren(), IsEmpty());
    EXPECT_EQ(m_root.GetParent(), nullptr);
}

TEST_F(CObjTree, RefusesAChildThatHasAParent) {
    CDiagObj* child = Add("child");
    CDiagObj other(TMENU, "other", "");
    EXPECT_THROW(other.AddChild(child, CDiagObj::NO_SORT), CDiagException);
    EXPECT_THROW(m_root.AddChild(child, CDiagObj::NO_SORT), CDiagException);
    EXPECT_EQ(child->GetParent(), &m_root);
    EXPECT_THAT(Names(m_root), ElementsAre("child"));
    EXPECT_THAT(other.GetChildren(), IsEmpty());
}

TEST_F(CObjTree, ResetsEveryNodeBelowOnce) {
    CDiagObj* child = Add("child");
    Add(*child, "grandchild");
    Add("sibling");
    m_root.Reset();
    EXPECT_EQ(m_resets, 3);
}

}  // namespace
