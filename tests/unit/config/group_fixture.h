#pragma once
// Panels and text boxes of a manager, under names, and groups that place them.
#include "config/fixed/group_order.h"
#include "config/fixed/group_walker.h"
#include "config/fixed/name_maps.h"
#include "config/fixed/variables.h"
#include "controls/panel.h"
#include "tests/unit/controls/text_fixture.h"

#include <string>

#include <tinyxml2.h>

class GroupTest : public TextTest {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        Forget();
    }
    void TearDown() override {
        Forget();
        TextTest::TearDown();
    }
    static void Forget() {
        g_fnClearNameMaps();
        g_fnRegisterVariables();
        g_listGroupExtension.clear();
    }
    /// Enters the name on first use.
    static u32 Number(NameMap& map, const std::string& szName) {
        return map.try_emplace(szName, static_cast<u32>(map.size())).first->second;
    }
    /// A panel under a name, at a template's place of anchor code 1, outside the tree.
    static CPanel_Base* Panel(const std::string& szName, f32 x, f32 y, f32 w, f32 h, u32 uInstance = 0) {
        auto* p = new recording::CPanel;
        p->m_fnSetShape(g_uShapeRect);
        p->m_fnSetGeometry(w, h);
        p->m_fnSetAnchor(1, x, y);
        const u64 u64Id = g_fnMakeLB_ID(uInstance, Number(g_stNameMaps.mapPanel, szName));
        EXPECT_EQ(g_fnRegisterXCtrl(IdPanel, u64Id, p), 1);
        return p;
    }
    /// A text box that is as large as its text: 8 a letter, 16 high.
    CTextBox_Base* Text(const std::string& szName, const char16_t* wzText, u32 uInstance = 0) {
        auto* p = new CLiveTextBox;
        p->m_fnSetFont(&m_font);
        p->m_fnSetTextSize(16);
        p->m_fnSetAutoSize(true);
        p->m_fnSetFitToText(true);
        p->m_fnSetAnchor(1, 0, 0);
        p->m_fnSetTextW(wzText);
        EXPECT_TRUE(p->m_fnInitialize());
        const u64 u64Id = g_fnMakeLB_ID(uInstance, Number(g_stNameMaps.mapTextBox, szName));
        EXPECT_EQ(g_fnRegisterXCtrl(IdTextBox, u64Id, p), 1);
        return p;
    }
    tinyxml2::XMLElement* Group(const std::string& szElements) {
        const std::string szText = "<Group>" + szElements + "</Group>";
        EXPECT_EQ(m_document.Parse(szText.c_str(), szText.size()), tinyxml2::XML_SUCCESS) << szText;
        return m_document.RootElement();
    }
    void Walk(const std::string& szElements) { EXPECT_TRUE(g_fnWalkWholeGroup(Group(szElements))); }

    static bool InTree(CControl* p) { return g_pOSDManager->m_fnHasParent(p); }
    /// Hangs from the root.
    static bool AtRoot(CControl* p) { return InTree(p) && !g_pOSDManager->m_fnGetParent(p); }
    static CControl* ParentOf(CControl* p) { return g_pOSDManager->m_fnGetParent(p); }
    static std::array<f32, 2> At(CControl* p) {
        f32 x, y;
        p->m_fnGetPosition(&x, &y, nullptr);
        return {x, y};
    }
    using Place = std::array<f32, 2>;

    tinyxml2::XMLDocument m_document;
};
