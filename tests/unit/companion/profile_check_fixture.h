#pragma once
// A data folder with one profile, and what the check says of it.
#include "tools/profile/check/profile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

class ProfileCheckTest : public testing::Test {
  protected:
    void SetUp() override {
        static unsigned s_uNumber = 0;
        const auto iNow = std::chrono::steady_clock::now().time_since_epoch().count();
        m_root = std::filesystem::temp_directory_path() /
                 ("orvin-lint-" + std::to_string(iNow) + '-' + std::to_string(++s_uNumber));
        std::filesystem::create_directories(m_root / "Profiles" / "Mine");
        WriteFile("OSD_Ref.xml", "<OSD/>\n");
        m_stOptions.strProfile = "Mine";
        m_stOptions.strDataFolder = m_root.generic_string();
    }
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_root, ignored);
    }
    void WriteFile(const std::string& strName, const std::string& strBytes) {
        std::ofstream(m_root / strName, std::ios::binary) << strBytes;
    }
    void Write(const std::string& strDocument) { WriteFile("Profiles/Mine/OSD.xml", strDocument); }
    /// The first item stands in line 5.
    void WriteItems(const std::string& strItems) {
        Write("<OSD LayoutStyle=\"2\">\n<CustomLayout><Settings>\n<Preview AspectRatio=\"16:9\"/>\n<Info>\n" +
              strItems + "\n</Info></Settings></CustomLayout></OSD>\n");
    }
    const companion::Findings& Check() {
        m_findings = {};
        companion::FindProfileFaults(m_stOptions, m_findings);
        return m_findings;
    }
    const companion::Findings& CheckItems(const std::string& strItems) {
        WriteItems(strItems);
        return Check();
    }
    /// Whether the last check said so; the text may be a part of the finding's.
    testing::AssertionResult Said(companion::Severity eSeverity, int iLine,
                                  const std::string& strPart) const {
        for (const companion::Finding& st : m_findings.All())
            if (st.eSeverity == eSeverity && st.iLine == iLine &&
                st.strText.find(strPart) != std::string::npos)
                return testing::AssertionSuccess();
        return testing::AssertionFailure() << "not said: " << strPart << "\n" << Report();
    }
    testing::AssertionResult SaidError(int iLine, const std::string& strPart) const {
        return Said(companion::Severity::Error, iLine, strPart);
    }
    testing::AssertionResult SaidWarning(int iLine, const std::string& strPart) const {
        return Said(companion::Severity::Warning, iLine, strPart);
    }
    testing::AssertionResult SaidNote(int iLine, const std::string& strPart) const {
        return Said(companion::Severity::Note, iLine, strPart);
    }
    /// Nothing of that severity or worse.
    testing::AssertionResult IsClean(companion::Severity eWorst = companion::Severity::Note) const {
        for (const companion::Finding& st : m_findings.All())
            if (st.eSeverity <= eWorst) return testing::AssertionFailure() << Report();
        return testing::AssertionSuccess();
    }
    std::string Report() const { return companion::FindingsAsText("Mine", m_findings, false); }

    /// A text that nothing is wrong with; strMore are further attributes.
    static std::string Text(const std::string& strName, const std::string& strMore = {}) {
        return "<TextBox IsShow=\"1\" Name=\"" + strName +
               "\" FontName=\"DejaVu Sans\" TextSize=\"24\" Text=\"Fan\" " + strMore + "/>";
    }
    static std::string Number(const std::string& strName,
                              const std::string& strMore = "DataFullName=\"FPS\"") {
        return "<NumBox IsShow=\"1\" Name=\"" + strName + "\" FontName=\"DejaVu Sans\" TextSize=\"24\" " +
               strMore + "/>";
    }
    static std::string Panel(const std::string& strName, const std::string& strMore = {}) {
        return "<Panel IsShow=\"1\" Name=\"" + strName + "\" ContentSizeW=\"100\" ContentSizeH=\"50\" " +
               strMore + "/>";
    }
    static std::string Graph(const std::string& strName, const std::string& strMore = "DataNum=\"60\"") {
        return "<LineGraph IsShow=\"1\" Name=\"" + strName +
               "\" DataFullName=\"FPS\" ContentSizeW=\"200\" ContentSizeH=\"60\" " + strMore + "/>";
    }
    static std::string Chart(const std::string& strName, const std::string& strMore = {}) {
        return "<PieChart IsShow=\"1\" Name=\"" + strName +
               "\" DataFullName=\"FPS\" ContentSizeW=\"100\" ContentSizeH=\"100\" ChartType=\"1\" " +
               (strMore.find("SlotNum") == std::string::npos ? "SlotNum=\"10\" " : "") + strMore + "/>";
    }

    std::filesystem::path m_root;
    companion::CheckOptions m_stOptions;
    companion::Findings m_findings;
};
