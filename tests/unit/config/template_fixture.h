#pragma once
// Templates from a piece of a reference file.
#include "config/fixed/attribute_value.h"
#include "config/fixed/name_maps.h"
#include "config/fixed/template_fonts.h"
#include "config/fixed/template_records.h"
#include "config/fixed/variables.h"

#include <gtest/gtest.h>

#include <string>

#include <tinyxml2.h>

/// Everything that templates are read into, empty at first. Mixed into the fixtures of managers and settings.
class CTemplateText {
  public:
    CTemplateText() { Reset(); }
    ~CTemplateText() { Reset(); }

    /// The element that holds the given elements.
    const tinyxml2::XMLElement* Template(const std::string& szElements) {
        const std::string szText = "<Template>" + szElements + "</Template>";
        EXPECT_EQ(m_document.Parse(szText.c_str(), szText.size()), tinyxml2::XML_SUCCESS) << szText;
        return m_document.RootElement();
    }
    static void SetFontScale(i32 iPercent) {
        tinyxml2::XMLDocument document;
        tinyxml2::XMLElement* pInfo = document.NewElement("Info");
        document.InsertEndChild(pInfo);
        pInfo->SetAttribute("FontScale", iPercent);
        g_fnReadFontScale(pInfo);
    }

  private:
    static void Reset() {
        g_fnClearTemplates();
        g_fnClearNameMaps();
        g_fnRegisterVariables();
        g_fnReadFontScale(nullptr);
        g_stVariables.iAlign2X = g_stVariables.iAlign2Y = 0;
        g_stVariables.uCPUNum = g_stVariables.uGPUNum = 0;
    }
    tinyxml2::XMLDocument m_document;
};
