// The user's manual against what the linter and the readers know.
#include "base/log.h"
#include "config/items/item_graph.h"
#include "config/items/item_image.h"
#include "config/items/item_map.h"
#include "config/items/item_number.h"
#include "config/items/item_panel.h"
#include "config/items/item_pie.h"
#include "config/items/item_text.h"
#include "tests/unit/companion/profile_check_fixture.h"
#include "tools/profile/check/attributes.h"

#include <cstdlib>
#include <iterator>
#include <regex>
#include <set>
#include <tinyxml2.h>

using namespace companion;

namespace {

namespace fs = std::filesystem;

const fs::path g_pathDocs = fs::path(ORVIN_SOURCE_DIR) / "docs";

std::string ReadAll(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// From a heading to the next one.
std::string Section(const std::string& strManual, const std::string& strHeading) {
    const std::size_t uBegin = strManual.find('\n' + strHeading + '\n');
    if (uBegin == std::string::npos) return {};
    return strManual.substr(uBegin, strManual.find("\n#", uBegin + 2) - uBegin);
}

std::string Row(const stAttribute& st) {
    return std::string("\n| `") + st.szName + "` | " + (*st.szDefault ? st.szDefault : "*empty*") + " | " +
           st.szRange + " | " + st.szMeaning + " |\n";
}

/// The rows of the table in a section, written anew.
std::string WithRows(const std::string& strSection, std::span<const stAttribute> attributes) {
    static const std::regex s_rows("(\n\\|---.*)(\n\\| `.*)*\n");
    std::string strRows = "$1";
    for (const stAttribute& st : attributes) {
        const std::string strRow = Row(st);
        strRows.append(strRow, 0, strRow.size() - 1);
    }
    return std::regex_replace(strSection, s_rows, strRows + "\n", std::regex_constants::format_first_only);
}

/// Calls fn(section, its attributes, its element) for each table of attributes in the manual.
template <class Function> void ForEachTable(Function fn) {
    fn("## What all items have", CommonAttributes(), "all items");
    for (const stElement& st : ProfileElements())
        if (!st.attributes.empty()) fn(std::string("### ") + st.szName, st.attributes, st.szName);
}

/// With ORVIN_WRITE_MANUAL set, the manual gets its tables from the attributes.
void WriteManual() {
    std::string strManual = ReadAll(g_pathDocs / "writing-a-profile.md");
    ForEachTable([&](const std::string& strHeading, std::span<const stAttribute> attributes, const char*) {
        const std::string strSection = Section(strManual, strHeading);
        if (!strSection.empty())
            strManual.replace(strManual.find(strSection), strSection.size(),
                              WithRows(strSection, attributes));
    });
    std::ofstream(g_pathDocs / "writing-a-profile.md", std::ios::binary) << strManual;
}

void ExpectRows(const std::string& strSection, std::span<const stAttribute> attributes,
                const char* szElement) {
    EXPECT_FALSE(strSection.empty()) << "no section for " << szElement;
    for (const stAttribute& st : attributes)
        EXPECT_NE(strSection.find(Row(st)), std::string::npos) << szElement << Row(st);
    static const std::regex s_row("\n\\| `[A-Za-z]+` \\|");
    const auto iRows = std::distance(std::sregex_iterator(strSection.begin(), strSection.end(), s_row), {});
    EXPECT_EQ(static_cast<std::size_t>(iRows), attributes.size()) << szElement;
}

TEST(ProfileManual, HasARowForEachAttribute) {
    if (std::getenv("ORVIN_WRITE_MANUAL")) WriteManual();
    const std::string strManual = ReadAll(g_pathDocs / "writing-a-profile.md");
    ForEachTable(
        [&](const std::string& strHeading, std::span<const stAttribute> attributes, const char* szElement) {
            ExpectRows(Section(strManual, strHeading), attributes, szElement);
        });
}

TEST(ProfileManual, ShowsSmallPicturesThatExist) {
    const std::string strManual = ReadAll(g_pathDocs / "writing-a-profile.md");
    static const std::regex s_picture("!\\[[^\\]]*\\]\\((pictures/[a-z-]+\\.png)\\)");
    std::set<std::string> shown;
    for (std::sregex_iterator it(strManual.begin(), strManual.end(), s_picture), end; it != end; ++it)
        shown.insert((*it)[1]);
    EXPECT_GE(shown.size(), 20u);
    for (const std::string& str : shown) {
        ASSERT_TRUE(fs::exists(g_pathDocs / str)) << str;
        EXPECT_LE(fs::file_size(g_pathDocs / str), 30u * 1024) << str;
    }
    for (const auto& entry : fs::directory_iterator(g_pathDocs / "pictures" / "profiles"))
        EXPECT_TRUE(shown.contains("pictures/" + entry.path().filename().generic_string() + ".png"))
            << entry.path();
}

TEST(ProfileManual, ItsProfilesPass) {
    for (const auto& entry : fs::directory_iterator(g_pathDocs / "pictures" / "profiles")) {
        CheckOptions st;
        st.strProfile = entry.path().generic_string();
        st.strDataFolder = std::string(ORVIN_SOURCE_DIR) + "/data";
        std::string strReport;
        EXPECT_EQ(CheckProfile(st, strReport), 0) << strReport;
    }
}

TEST(ProfileManual, ItsFirstProfileIsTheOneOfThePicture) {
    const std::string strManual = ReadAll(g_pathDocs / "writing-a-profile.md");
    std::ifstream file(g_pathDocs / "pictures" / "profiles" / "first" / "OSD.xml");
    for (std::string strLine; std::getline(file, strLine);)
        EXPECT_NE(strManual.find("    " + strLine + "\n"), std::string::npos) << strLine;
}

std::string g_strDump;

void ReadAllKinds(const tinyxml2::XMLElement* pInfo) {
    g_fnReadTextBoxItems(pInfo, false);
    g_fnReadTextBoxItems(pInfo, true);
    g_fnReadNumBoxItems(pInfo);
    g_fnReadPanelItems(pInfo);
    g_fnReadImgBoxItems(pInfo);
    g_fnReadLineGraphItems(pInfo);
    g_fnReadPieChartItems(pInfo);
}

/// What the readers make of one element.
std::string Dump(const std::string& strElement) {
    tinyxml2::XMLDocument document;
    document.Parse(("<Info>" + strElement + "</Info>").c_str());
    g_fnClearItems();
    ReadAllKinds(document.RootElement());
    g_strDump.clear();
    g_fnLogSink = [](const char* sz) { g_strDump += sz; };
    for (const auto& [strName, pItem] : g_mapItemByName) {
        pItem->m_fnPrintData();
        g_fnLog("%i %i %i %u %u", pItem->m_iContentAnchor, pItem->m_iContentAnchorX, pItem->m_iContentAnchorY,
                pItem->m_uContentSizeW, pItem->m_uContentSizeH);
    }
    g_fnLogSink = nullptr;
    g_fnClearItems();
    return g_strDump;
}

TEST(ProfileAttributes, DefaultsAreThoseOfTheReaders) {
    // What the kinds can't do without, so that leaving any other attribute out shows its default.
    const std::string strNeeded = " IsShow=\"1\" Name=\"n\" ", strFace = "FontName=\"F\" ",
                      strData = "DataFullName=\"D\" ";
    for (const stElement& element : ProfileElements()) {
        if (element.eUse != ElementUse::Item) continue;
        const bool bFace = FindAttribute(element, "FontName"), bData = FindAttribute(element, "DataFullName");
        const std::string strBare =
            std::string("<") + element.szName + strNeeded + (bFace ? strFace : "") + (bData ? strData : "");
        const std::string strPlain = Dump(strBare + "/>");
        ASSERT_FALSE(strPlain.empty()) << element.szName;
        const auto Try = [&](const stAttribute& st) {
            if (strBare.find(std::string(" ") + st.szName + '=') != std::string::npos) return;
            EXPECT_EQ(Dump(strBare + st.szName + "=\"" + st.szDefault + "\"/>"), strPlain)
                << element.szName << st.szName;
        };
        for (const stAttribute& st : CommonAttributes()) Try(st);
        for (const stAttribute& st : element.attributes) Try(st);
    }
}

TEST(ProfileAttributes, NamesAreKnownOnceInAnElement) {
    for (const stElement& element : ProfileElements()) {
        std::set<std::string_view> names;
        for (const stAttribute& st : element.attributes)
            EXPECT_TRUE(names.insert(st.szName).second) << st.szName;
        if (element.eUse != ElementUse::Item) continue;
        for (const stAttribute& st : CommonAttributes()) EXPECT_FALSE(names.contains(st.szName)) << st.szName;
    }
    EXPECT_EQ(FindElement("Memo", "Settings")->eUse, ElementUse::Ignored);
    EXPECT_EQ(FindElement("Memo", "Info")->eUse, ElementUse::Item);
    EXPECT_EQ(FindElement("Memo", "OSD"), nullptr);
}

} // namespace
