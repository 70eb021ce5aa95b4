#pragma once
// Items from a piece of a profile, and the words that reading them leaves in the log.
#include "base/log.h"
#include "config/items/item_number.h"
#include "config/items/item_panel.h"
#include "config/items/item_text.h"
#include "config/items/kinds.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <tinyxml2.h>

class ItemTest : public testing::Test {
  protected:
    void SetUp() override {
        g_fnClearItems();
        s_aLines.clear();
        g_fnLogSink = [](const char* szLine) { s_aLines.emplace_back(szLine); };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        g_fnClearItems();
    }

    /// The list element that holds the given elements.
    const tinyxml2::XMLElement* Info(const std::string& szItems) {
        const std::string szDocument = "<Info>" + szItems + "</Info>";
        m_document.Parse(szDocument.c_str(), szDocument.size());
        EXPECT_FALSE(m_document.Error()) << m_document.ErrorStr();
        return m_document.RootElement();
    }
    void ReadTexts(const std::string& szItems) { EXPECT_TRUE(g_fnReadTextBoxItems(Info(szItems), false)); }
    void ReadMemos(const std::string& szItems) { EXPECT_TRUE(g_fnReadTextBoxItems(Info(szItems), true)); }
    void ReadNumbers(const std::string& szItems) { EXPECT_TRUE(g_fnReadNumBoxItems(Info(szItems))); }
    void ReadPanels(const std::string& szItems) { EXPECT_TRUE(g_fnReadPanelItems(Info(szItems))); }

    /// The registered item, null if there is none.
    static CItemProperty_Base* Find(const char* szName) {
        CItemProperty_Base* pItem = nullptr;
        g_fnQueryItemProperty(szName, &pItem);
        return pItem;
    }
    static const CItemProperty_TextBox* Text(const char* szName) { return g_fnAsTextBox(Find(szName)); }
    static const CItemProperty_NumBox* Number(const char* szName) { return g_fnAsNumBox(Find(szName)); }
    static const CItemProperty_Panel* Panel(const char* szName) { return g_fnAsPanel(Find(szName)); }

    using Lines = std::vector<std::string>;
    static inline Lines s_aLines;

  private:
    tinyxml2::XMLDocument m_document;
    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
};
