// The known elements and the container that finds them.
#include <gmock/gmock.h>

#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "i2c/diag_param_eeprom_xml_parser_tag.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;

static_assert(DIMM_VERSION == 0 && JEDEC_MANUFACTURER_ID == 1 && SIGNATURE == 2);
static_assert(DIMM_PART_NUM == 3 && REVISION_START == 4 && REVISION_END == 5);
static_assert(REGISTER_SET == 6 && OFFSET == 7 && VALUE == 8 && GENERIC == 9 && ERROR == 10);
static_assert(std::has_virtual_destructor_v<Tag>);

// A tag that occurred so often and is at that group.
Tag Counted(const char* name, tag_types id, uint32_t instances, uint32_t entry_count = 0) {
    Tag tag(name, id);
    for (uint32_t i = 0; i < instances; ++i) {
        tag.incInstance();
    }
    for (uint32_t i = 0; i < entry_count; ++i) {
        tag.incEntryCount();
    }
    return tag;
}

TEST(DimmTag, IsNoElementByDefault) {
    const Tag tag;
    EXPECT_STREQ(tag.getTagname(), "N/A");
    EXPECT_EQ(tag.getTagID(), GENERIC);
    EXPECT_EQ(tag.getInstance(), 0U);
    EXPECT_EQ(tag.getEntryCount(), 0U);
    EXPECT_THAT(tag.getTextnodes(), IsEmpty());
}

TEST(DimmTag, CopiesItsName) {
    std::string name = "offset";
    const Tag tag(name.c_str(), OFFSET);
    name.assign(name.size(), 'x');
    EXPECT_STREQ(tag.getTagname(), "offset");
    EXPECT_EQ(tag.getTagID(), OFFSET);
    EXPECT_EQ(tag.getInstance(), 0U);
    EXPECT_EQ(tag.getEntryCount(), 0U);
}

TEST(DimmTag, CountsOccurrencesAndGroupsApart) {
    Tag tag("value", VALUE);
    tag.incInstance();
    tag.incInstance();
    tag.incEntryCount();
    EXPECT_EQ(tag.getInstance(), 2U);
    EXPECT_EQ(tag.getEntryCount(), 1U);
}

TEST(DimmTag, KeepsItsTextsInOrder) {
    TextNode first{.textString = "10", .entry = 1};
    TextNode second{.textString = "20", .entry = 2};
    TextNode third{.textString = "30", .entry = 2};
    Tag tag("offset", OFFSET);
    tag.insertaTextNode(&first);
    tag.insertaTextNode(&second);
    tag.insertaTextNode(&third);
    EXPECT_THAT(tag.getTextnodes(), ElementsAre(&first, &second, &third));
    EXPECT_EQ(tag.getaTextNode(0), &first);
    EXPECT_EQ(tag.getaTextNode(2), &third);
    EXPECT_EQ(tag.getTextNodeCount(), 3U);
}

TEST(DimmTag, CountsTheTextsOfOneGroup) {
    TextNode first{.textString = "10", .entry = 1};
    TextNode second{.textString = "20", .entry = 3};
    TextNode third{.textString = "30", .entry = 3};
    Tag tag("offset", OFFSET);
    tag.insertaTextNode(&first);
    tag.insertaTextNode(&second);
    tag.insertaTextNode(&third);
    EXPECT_EQ(tag.getTextNodeCountwith(0), 0U);
    EXPECT_EQ(tag.getTextNodeCountwith(1), 1U);
    EXPECT_EQ(tag.getTextNodeCountwith(2), 0U);
    EXPECT_EQ(tag.getTextNodeCountwith(3), 2U);
}

TEST(DimmTag, RefusesATextThatItDoesNotHave) {
    TextNode node{.textString = "10", .entry = 1};
    Tag tag("offset", OFFSET);
    EXPECT_THROW(tag.getaTextNode(0), std::out_of_range);
    tag.insertaTextNode(&node);
    EXPECT_THROW(tag.getaTextNode(1), std::out_of_range);
    EXPECT_THROW(tag.getaTextNode(0xFFFFFFFF), std::out_of_range);
}

TEST(DimmTag, GivesACopyOfItsList) {
    TextNode node{.textString = "10", .entry = 1};
    Tag tag("offset", OFFSET);
    tag.insertaTextNode(&node);
    tag.getTextnodes().clear();
    EXPECT_THAT(tag.getTextnodes(), ElementsAre(&node));
}

TEST(DimmTag, CopyHasTheCountersButNotTheTexts) {
    TextNode node{.textString = "10", .entry = 1};
    auto original = std::make_unique<Tag>(Counted("value", VALUE, 3, 2));
    original->insertaTextNode(&node);
    const Tag copy(*original);
    original.reset();
    EXPECT_STREQ(copy.getTagname(), "value");
    EXPECT_EQ(copy.getTagID(), VALUE);
    EXPECT_EQ(copy.getInstance(), 3U);
    EXPECT_EQ(copy.getEntryCount(), 2U);
    EXPECT_THAT(copy.getTextnodes(), IsEmpty());
}

TEST(DimmTag, AssignmentLeavesTheTextsWhereTheyAre) {
    TextNode mine{.textString = "10", .entry = 1};
    TextNode other{.textString = "20", .entry = 2};
    Tag tag("offset", OFFSET);
    tag.insertaTextNode(&mine);
    auto source = std::make_unique<Tag>(Counted("signature", SIGNATURE, 4, 5));
    source->insertaTextNode(&other);
    EXPECT_EQ(&(tag = *source), &tag);
    EXPECT_THAT(source->getTextnodes(), ElementsAre(&other));
    source.reset();
    EXPECT_STREQ(tag.getTagname(), "signature");
    EXPECT_EQ(tag.getTagID(), SIGNATURE);
    EXPECT_EQ(tag.getInstance(), 4U);
    EXPECT_EQ(tag.getEntryCount(), 5U);
    EXPECT_THAT(tag.getTextnodes(), ElementsAre(&mine));
}

TEST(DimmTag, AssignmentToItselfChangesNothing) {
    TextNode node{.textString = "10", .entry = 1};
    Tag tag = Counted("revision_end", REVISION_END, 2, 1);
    tag.insertaTextNode(&node);
    const Tag& same = tag;
    tag = same;
    EXPECT_STREQ(tag.getTagname(), "revision_end");
    EXPECT_EQ(tag.getTagID(), REVISION_END);
    EXPECT_EQ(tag.getInstance(), 2U);
    EXPECT_EQ(tag.getEntryCount(), 1U);
    EXPECT_THAT(tag.getTextnodes(), ElementsAre(&node));
}

TEST(DimmTag, AssignmentIsVirtual) {
    class CNoted : public Tag {
      public:
        // NOLINTNEXTLINE(misc-unconventional-assign-operator): it overrides the base's
        Tag& operator=(const Tag& other) override {
            m_assigned = true;
            return Tag::operator=(other);
        }
        bool m_assigned = false;
    };
    CNoted noted;
    Tag& tag = noted;
    tag = Tag("offset", OFFSET);
    EXPECT_TRUE(noted.m_assigned);
    EXPECT_EQ(noted.getTagID(), OFFSET);
}

TEST(DimmTags, FindsByIdentifierAndByName) {
    Tag offset("offset", OFFSET);
    Tag value("value", VALUE);
    MTag tags;
    EXPECT_TRUE(tags.insert(&value));
    EXPECT_TRUE(tags.insert(&offset));
    EXPECT_EQ(tags.find(OFFSET), &offset);
    EXPECT_EQ(tags.find(VALUE), &value);
    EXPECT_EQ(tags.find("offset"), &offset);
    EXPECT_EQ(tags.find(std::string("value")), &value);
}

TEST(DimmTags, FindsNothingThatIsNotThere) {
    Tag offset("offset", OFFSET);
    MTag tags;
    EXPECT_THAT(tags.find(OFFSET), IsNull());
    EXPECT_THAT(tags.find("offset"), IsNull());
    tags.insert(&offset);
    EXPECT_THAT(tags.find(VALUE), IsNull());
    for (const char* name : {"", "offse", "offsets", "Offset", "OFFSET", " offset"}) {
        EXPECT_THAT(tags.find(name), IsNull()) << name;
    }
}

TEST(DimmTags, RefusesAnIdentifierThatIsThere) {
    Tag first("offset", OFFSET);
    Tag second("other", OFFSET);
    MTag tags;
    EXPECT_TRUE(tags.insert(&first));
    EXPECT_FALSE(tags.insert(&second));
    EXPECT_EQ(tags.find(OFFSET), &first);
    EXPECT_EQ(tags.find("offset"), &first);
}

TEST(DimmTags, RefusesANameThatIsThere) {
    Tag first("offset", OFFSET);
    Tag second("offset", VALUE);
    MTag tags;
    EXPECT_TRUE(tags.insert(&first));
    EXPECT_FALSE(tags.insert(&second));
    EXPECT_EQ(tags.find("offset"), &first);
    EXPECT_EQ(tags.find(OFFSET), &first);
}

TEST(DimmTags, RefusesTheSameTagAgain) {
    Tag offset("offset", OFFSET);
    MTag tags;
    EXPECT_TRUE(tags.insert(&offset));
    EXPECT_FALSE(tags.insert(&offset));
    EXPECT_EQ(tags.find(OFFSET), &offset);
    EXPECT_EQ(std::distance(tags.begin(), tags.end()), 1);
}

TEST(DimmTags, AreInTheOrderOfTheirIdentifiers) {
    Tag value("value", VALUE);
    Tag version("dimm_table_version", DIMM_VERSION);
    Tag start("revision_start", REVISION_START);
    MTag tags;
    EXPECT_EQ(tags.begin(), tags.end());
    for (Tag* tag : {&value, &version, &start}) {
        tags.insert(tag);
    }
    std::vector<const Tag*> order;
    for (const auto& [id, tag] : tags) {
        EXPECT_EQ(tag->getTagID(), id);
        order.push_back(tag);
    }
    EXPECT_THAT(order, ElementsAre(&version, &start, &value));
}

TEST(DimmTags, TellWhichOccurLeastAndMost) {
    Tag version = Counted("dimm_table_version", DIMM_VERSION, 2);
    Tag jedec = Counted("jedec_manufacturer_id", JEDEC_MANUFACTURER_ID, 1);
    Tag offset = Counted("offset", OFFSET, 2);
    Tag value = Counted("value", VALUE, 1);
    MTag tags;
    for (Tag* tag : {&value, &offset, &jedec, &version}) {
        tags.insert(tag);
    }
    EXPECT_THAT(tags.find_Min_instance_tag(), ElementsAre(&jedec, &value));
    EXPECT_THAT(tags.find_Max_instance_tag(), ElementsAre(&version, &offset));
}

TEST(DimmTags, ThatOccurEquallyOftenAreAllLeastAndMost) {
    Tag offset("offset", OFFSET);
    Tag value("value", VALUE);
    MTag tags;
    tags.insert(&value);
    tags.insert(&offset);
    EXPECT_THAT(tags.find_Min_instance_tag(), ElementsAre(&offset, &value));
    EXPECT_THAT(tags.find_Max_instance_tag(), ElementsAre(&offset, &value));
}

TEST(DimmTags, NoneIsLeastOrMostOfNone) {
    const MTag tags;
    EXPECT_THAT(tags.find_Min_instance_tag(), IsEmpty());
    EXPECT_THAT(tags.find_Max_instance_tag(), IsEmpty());
}

TEST(DimmTags, KnowWhatEachModuleHas) {
    for (uint32_t id = DIMM_VERSION; id <= ERROR; ++id) {
        const bool entry = id == 1 || id == 3 || id == 4 || id == 5;
        EXPECT_EQ(MTag::isEntryTag(static_cast<tag_types>(id)), entry) << id;
    }
}

TEST(DimmTags, KnowWhatTheTableHas) {
    for (uint32_t id = DIMM_VERSION; id <= ERROR; ++id) {
        const bool header = id == 0 || id == 2;
        EXPECT_EQ(MTag::isDimmHeaderTag(static_cast<tag_types>(id)), header) << id;
    }
}

TEST(DimmTags, AcceptEveryHeader) {
    Tag version = Counted("dimm_table_version", DIMM_VERSION, 5);
    Tag signature("signature", SIGNATURE);
    MTag tags;
    EXPECT_TRUE(tags.checkHeaderTagsEq());
    tags.insert(&version);
    tags.insert(&signature);
    EXPECT_TRUE(tags.checkHeaderTagsEq());
}

}  // namespace
