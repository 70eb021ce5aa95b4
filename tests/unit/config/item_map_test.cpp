#include "config/items/interner.h"
#include "tests/unit/config/item_fixture.h"

#include <cstring>

namespace {

class ItemMap : public ItemTest {
  protected:
    template <class T> static T Named(const char* szName, u64 u64Id) {
        T item;
        std::strcpy(item.m_szItemName, szName);
        item.m_u64ItemId = u64Id;
        return item;
    }
};

TEST_F(ItemMap, ARegisteredRecordIsACompleteCopy) {
    auto item = Named<CItemProperty_NumBox>("n", 7);
    std::strcpy(item.m_szDataFullName, "FPS");
    item.m_fTextSize = 12;
    item.m_uFrameSizeW = 33;
    ASSERT_TRUE(g_fnRegisterItemProperty(&item));
    const auto* p = Number("n");
    ASSERT_NE(p, nullptr);
    EXPECT_NE(p, &item);
    EXPECT_EQ(p->m_pComplete, p);
    EXPECT_STREQ(p->m_szDataFullName, "FPS");
    EXPECT_EQ(p->m_fTextSize, 12.0f);
    EXPECT_EQ(p->m_uFrameSizeW, 33u);
    EXPECT_EQ(g_mapItemById.at(7), Find("n"));
    item.m_szDataFullName[0] = 'X';
    EXPECT_STREQ(p->m_szDataFullName, "FPS");
}

TEST_F(ItemMap, EachTypeCodeMakesItsClass) {
    auto text = Named<CItemProperty_TextBox>("t", 1);
    auto memo = Named<CItemProperty_TextBox>("m", 2);
    memo.m_fnSetType(ITEM_MEMO);
    auto number = Named<CItemProperty_NumBox>("n", 3);
    auto mixed = Named<CItemProperty_NumBox>("x", 4);
    mixed.m_fnSetType(ITEM_MIXED);
    auto panel = Named<CItemProperty_Panel>("p", 5);
    for (const CItemProperty_Base* p :
         std::initializer_list<const CItemProperty_Base*>{&text, &memo, &number, &mixed, &panel})
        EXPECT_TRUE(g_fnRegisterItemProperty(p));
    EXPECT_NE(dynamic_cast<CItemProperty_TextBox*>(Find("t")), nullptr);
    EXPECT_NE(dynamic_cast<CItemProperty_TextBox*>(Find("m")), nullptr);
    EXPECT_NE(dynamic_cast<CItemProperty_NumBox*>(Find("n")), nullptr);
    EXPECT_NE(dynamic_cast<CItemProperty_NumBox*>(Find("x")), nullptr);
    EXPECT_NE(dynamic_cast<CItemProperty_Panel*>(Find("p")), nullptr);
    EXPECT_NE(Text("m"), nullptr);
    EXPECT_NE(Number("x"), nullptr);
    EXPECT_NE(Panel("p"), nullptr);
    EXPECT_EQ(Number("t"), nullptr);
    EXPECT_EQ(Text("n"), nullptr);
    EXPECT_EQ(Panel("t"), nullptr);
}

TEST_F(ItemMap, NullTakenNamesAndForeignTypesAreRefused) {
    EXPECT_FALSE(g_fnRegisterItemProperty(nullptr));
    auto first = Named<CItemProperty_TextBox>("a", 1);
    auto second = Named<CItemProperty_NumBox>("a", 2);
    EXPECT_TRUE(g_fnRegisterItemProperty(&first));
    EXPECT_FALSE(g_fnRegisterItemProperty(&second));
    EXPECT_NE(Text("a"), nullptr);
    EXPECT_EQ(g_mapItemById.size(), 1u);
    CItemProperty_Base none;
    std::strcpy(none.m_szItemName, "b");
    EXPECT_FALSE(g_fnRegisterItemProperty(&none));
    EXPECT_EQ(Find("b"), nullptr);
}

TEST_F(ItemMap, ASecondRecordUnderOneIdTakesThePlaceById) {
    auto first = Named<CItemProperty_TextBox>("a", 1);
    auto second = Named<CItemProperty_TextBox>("b", 1);
    EXPECT_TRUE(g_fnRegisterItemProperty(&first));
    EXPECT_TRUE(g_fnRegisterItemProperty(&second));
    EXPECT_EQ(g_mapItemById.size(), 1u);
    EXPECT_EQ(g_mapItemById.at(1), Find("b"));
    EXPECT_NE(Find("a"), nullptr);
}

TEST_F(ItemMap, ItemsStandInOrderOfIdsAndOfNameBytes) {
    for (const auto& [szName, u64Id] :
         {std::pair<const char*, u64>{"b", 1}, {"\xC3\xA9", 2}, {"a", 3}, {"B", 4}, {"ab", 5}}) {
        auto item = Named<CItemProperty_Panel>(szName, u64Id);
        EXPECT_TRUE(g_fnRegisterItemProperty(&item));
    }
    Lines aByName, aById;
    for (const auto& [szName, pItem] : g_mapItemByName) aByName.push_back(szName);
    for (const auto& [u64Id, pItem] : g_mapItemById) aById.push_back(pItem->m_szItemName);
    EXPECT_EQ(aByName, (Lines{"B", "a", "ab", "b", "\xC3\xA9"}));
    EXPECT_EQ(aById, (Lines{"b", "\xC3\xA9", "a", "B", "ab"}));
}

TEST_F(ItemMap, EnumeratingClearsTheListAndGoesInIdOrder) {
    auto a = Named<CItemProperty_TextBox>("a", 9);
    auto b = Named<CItemProperty_NumBox>("b", 5);
    auto c = Named<CItemProperty_TextBox>("c", 2);
    g_fnRegisterItemProperty(&a);
    g_fnRegisterItemProperty(&b);
    g_fnRegisterItemProperty(&c);
    std::vector<CItemProperty_Base*> list = {nullptr, nullptr};
    g_fnEnumItemsOfType(list, ITEM_TEXTBOX);
    EXPECT_EQ(list, (std::vector<CItemProperty_Base*>{Find("c"), Find("a")}));
    g_fnEnumItemsOfType(list, ITEM_PIECHART);
    EXPECT_TRUE(list.empty());
}

TEST_F(ItemMap, AnUnknownNameLeavesTheOutputAlone) {
    CItemProperty_Base item;
    CItemProperty_Base* p = &item;
    EXPECT_FALSE(g_fnQueryItemProperty("unknown", &p));
    EXPECT_FALSE(g_fnQueryItemProperty(nullptr, &p));
    EXPECT_FALSE(g_fnQueryItemProperty("unknown", nullptr));
    EXPECT_EQ(p, &item);
    EXPECT_FALSE(g_fnIsItemNameTaken("unknown"));
    EXPECT_FALSE(g_fnIsItemNameTaken(nullptr));
}

TEST_F(ItemMap, ClearingFreesNamesAndKeepsTheirIds) {
    ReadPanels("<Panel Name='item map cleared' IsShow='1'/>");
    const u64 u64Id = Find("item map cleared")->m_u64ItemId;
    g_fnClearItems();
    EXPECT_TRUE(g_mapItemByName.empty());
    EXPECT_TRUE(g_mapItemById.empty());
    ReadPanels("<Panel Name='item map cleared' IsShow='1'/>");
    EXPECT_EQ(Find("item map cleared")->m_u64ItemId, u64Id);
}

TEST_F(ItemMap, NoElementAtAllIsFine) {
    EXPECT_TRUE(g_fnReadTextBoxItems(nullptr, false));
    EXPECT_TRUE(g_fnReadTextBoxItems(nullptr, true));
    EXPECT_TRUE(g_fnReadNumBoxItems(nullptr));
    EXPECT_TRUE(g_fnReadPanelItems(nullptr));
    ReadTexts("<Other Name='a' IsShow='1'/>some text<!-- and a comment -->");
    EXPECT_TRUE(g_mapItemByName.empty());
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemMap, OnlyDirectChildrenAreItems) {
    ReadPanels("<Group><Panel Name='inner' IsShow='1'/></Group>"
               "<Panel Name='outer' IsShow='1'><Panel Name='nested' IsShow='1'/></Panel>");
    EXPECT_EQ(g_mapItemByName.size(), 1u);
    EXPECT_NE(Panel("outer"), nullptr);
}

TEST_F(ItemMap, ControlNamesCarryStemSuffixAndOwner) {
    const auto owned = [] {
        auto item = Named<CItemProperty_NumBox>("clock@x@bar", 1);
        std::strcpy(item.m_szItemOwner, "bar");
        return item;
    }();
    EXPECT_EQ(g_fnItemControlName(owned, "_F"), "clock@x_F@bar");
    EXPECT_EQ(g_fnItemControlName(owned, "[2]"), "clock@x[2]@bar");
    EXPECT_EQ(g_fnItemControlName(owned, ""), "clock@x@bar");
    EXPECT_EQ(g_fnItemStem(owned), "clock@x");
    std::string szOwner;
    EXPECT_TRUE(g_fnItemOwner(owned, szOwner));
    EXPECT_EQ(szOwner, "bar");
}

TEST_F(ItemMap, ControlNamesWithoutOwner) {
    const auto plain = Named<CItemProperty_NumBox>("clock", 1);
    EXPECT_EQ(g_fnItemControlName(plain, "_F"), "clock_F");
    EXPECT_EQ(g_fnItemControlName(plain, "[0]"), "clock[0]");
    EXPECT_EQ(g_fnItemControlName(plain, ""), "clock");
    std::string szOwner = "old";
    EXPECT_FALSE(g_fnItemOwner(plain, szOwner));
    EXPECT_EQ(szOwner, "old");
}

TEST_F(ItemMap, OnlyNumbersHaveADataName) {
    auto number = Named<CItemProperty_NumBox>("n", 1);
    std::strcpy(number.m_szDataFullName, "FPS");
    EXPECT_STREQ(g_fnItemDataName(number), "FPS");
    EXPECT_EQ(g_fnItemDataName(Named<CItemProperty_TextBox>("t", 2)), nullptr);
    EXPECT_EQ(g_fnItemDataName(Named<CItemProperty_Panel>("p", 3)), nullptr);
}

} // namespace
