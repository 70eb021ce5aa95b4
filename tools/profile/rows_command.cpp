#include "tools/profile/rows_command.h"
#include "base/layout_style.h"
#include "companion/choices.h"
#include "companion/segment_view.h"
#include "companion/sensors/published.h"
#include "companion/table.h"
#include "companion/utf.h"
#include "config/fixed/style_rows.h"
#include "config/fixed/template_records.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_switches.h"
#include "config/settings/setting_binding.h"
#include "config/settings/settings.h"
#include "config/settings/settings_sensors.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"
#include "controls/num_box.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "controls/text_box.h"
#include "draw/canvas.h"
#include "platform/utf.h"
#include "shared/own_names.h"
#include "tools/profile/program.h"
#include "tools/profile/renderer.h"
#include "tools/profile/settings.h"
#include "tools/profile/stage.h"
#include "tools/profile/values.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <nlohmann/json.hpp>
#include <tinyxml2.h>

namespace companion {
namespace {

using tinyxml2::XMLElement;

constexpr double kSampleSeconds = 1.2; ///< all intervals of the settings are over once

const stStyleItems& Style() { return g_uLayoutStyle == STYLE_RV5 ? g_stRV5Items : g_stClassicItems; }

std::string Narrow(const char16_t* wz) {
    std::string str(std::char_traits<char16_t>::length(wz) * 3 + 1, '\0');
    platform::Utf16ToUtf8(wz, str.data(), static_cast<u32>(str.size()));
    return str.c_str();
}

std::string TextOf(u32 uTextBID) {
    const stTextTemplate* const p = g_stTemplates.poolTextBox.m_fnFind(uTextBID);
    return p ? Narrow(p->wzText.c_str()) : std::string();
}

/// Title of a row. In the grid three rows share that of their card or CPU, and figures have their unit only.
std::string CaptionOf(const stDisplayRow& row, u32 uPosition) {
    const auto Text = [](const std::string& strWord, const char* szRole) {
        return TextOf(g_fnItemBID(Style(), eItem::Text, strWord, szRole));
    };
    const std::string strTitle = Text(row.szWord, "TITLE");
    if (!strTitle.empty()) return strTitle;
    const std::string strBlock =
        std::string(row.szWord).substr(0, 3) + (uPosition == 0 ? "_FIRST" : "_SECOND");
    if (row.eOf == eRowOf::Card || row.eOf == eRowOf::Cpu) return Text(strBlock, "TITLE");
    return Text(row.szWord, "UNIT");
}

nlohmann::ordered_json JsonOf(const f32 (&afBox)[4]) { return {afBox[0], afBox[1], afBox[2], afBox[3]}; }

void TakeBox(CControl& control, f32 (&afBox)[4]) {
    control.m_fnGetPosition(&afBox[0], &afBox[1], nullptr);
    control.m_fnGetSize(&afBox[2], &afBox[3]);
}

/// Adds the box of a control, if there is one and something is written in it by now.
void AddBox(std::vector<RowBox>& list, const char* szPart, CControl* p) {
    RowBox st{szPart, {}};
    if (p) TakeBox(*p, st.afBox);
    if (p && st.afBox[2] > 0 && st.afBox[3] > 0) list.push_back(st);
}

/// The boxes of a word at an instance.
std::vector<RowBox> BoxesOf(const std::string& strWord, u32 uInstance) {
    std::vector<RowBox> list;
    const auto Id = [&](eItem eKind, const char* szRole) {
        return g_fnMakeLB_ID(uInstance, g_fnItemBID(Style(), eKind, strWord, szRole));
    };
    AddBox(list, "title", g_fnFindCtrlById(Id(eItem::Text, "TITLE"), g_fnKind<KIND_TEXTBOX>()));
    for (const char* szRole : {"VALUE", "VALUE1", "VALUE2", "VALUE3"}) {
        AddBox(list, "value", g_fnFindCtrlById(Id(eItem::Number, szRole), g_fnKind<KIND_NUMBOX>()));
        AddBox(list, "value", g_fnFindCtrlById(Id(eItem::Text, szRole), g_fnKind<KIND_TEXTBOX>()));
    }
    AddBox(list, "unit", g_fnFindCtrlById(Id(eItem::Text, "UNIT"), g_fnKind<KIND_TEXTBOX>()));
    return list;
}

/// The boxes of a sensor in a group. Its items have names only while the layout is built, so they go by
/// number.
std::vector<RowBox> BoxesOf(const stSensorDefinition& st, u32 uGroup) {
    std::vector<RowBox> list;
    const auto Add = [&](const char* szPart, i32 iItem, const auto& kind) {
        if (iItem >= 0)
            AddBox(list, szPart, g_fnFindCtrlById(g_fnMakeLB_ID(uGroup, static_cast<u32>(iItem)), kind));
    };
    Add("title", st.iTitleTextId, g_fnKind<KIND_TEXTBOX>());
    Add("value", st.iValueNumberId, g_fnKind<KIND_NUMBOX>());
    Add("unit", st.iUnitTextId, g_fnKind<KIND_TEXTBOX>());
    return list;
}

/// In the grid the first three rows of a card or CPU have words of their own.
std::string WordOf(const stDisplayRow& row, u32 uPosition) {
    const std::string strWord = row.szWord;
    const bool bBlock = g_uLayoutStyle != STYLE_RV5 &&
                        ((row.eOf == eRowOf::Card && row.uIndex < 3) || row.eOf == eRowOf::Cpu);
    return bBlock ? strWord.substr(0, 3) + (uPosition == 0 ? "_FIRST" : "_SECOND") + strWord.substr(3)
                  : strWord;
}

/// The grid's first lines have an order of their own: figures, first card, first CPU, then all others. Below
/// 0; 0 for a row that the profile's order is for.
i32 BlockOf(const stDisplayRow& row, u32 uPosition) {
    constexpr i32 iFigures = -4, iCard = -3, iCpu = -2, iOthers = -1;
    constexpr u32 uBlockRows = 3;
    const bool bFigure =
        row.eOf == eRowOf::Program &&
        (row.uIndex == ROW_FPS || row.uIndex == ROW_FRAME_TIME || row.uIndex == ROW_SYSTEM_TIME);
    const bool bCard = row.eOf == eRowOf::Card && row.uIndex < uBlockRows, bCpu = row.eOf == eRowOf::Cpu;
    if (g_uLayoutStyle == STYLE_RV5 || !(bFigure || bCard || bCpu)) return 0;
    if (bFigure) return iFigures;
    return uPosition > 0 ? iOthers : bCard ? iCard : iCpu;
}

/// Collects the rows, with what decides their order.
class Rows {
  public:
    explicit Rows(const std::set<std::string>& setPublished)
        : m_setPublished(setPublished), m_fnRank(g_fnRankRows(Style(), g_fnProfileInfo())) {}

    void AddTable() {
        for (const stDisplayRow& row : g_fnDisplayRows()) {
            if (row.eOf == eRowOf::Program) AddProgram(row);
            if (row.eOf == eRowOf::Card) AddCards(row);
            if (row.eOf == eRowOf::Cpu) AddCpus(row);
            if (row.eOf == eRowOf::Debug) AddDebug(row);
        }
    }
    void AddSensors();
    void AddFoot();
    std::vector<RowState> Take();

  private:
    struct Entry {
        RowState st;
        i32 iRank, iInstance;
    };
    void Add(RowState st, i32 iRank, i32 iInstance) {
        if (!g_stProfileSwitches.uInfo) st.bOn = false;
        m_list.push_back({std::move(st), iRank, iInstance});
    }
    i32 RankOf(const stDisplayRow& row, u32 uPosition) const {
        const i32 iBlock = BlockOf(row, uPosition);
        return iBlock < 0 ? iBlock : RankOf(row.szWord);
    }
    i32 RankOf(std::string_view szWord) const;
    bool IsPublished(const std::string& strData) const { return m_setPublished.contains(strData); }
    void AddBoxes(const stDisplayRow& row, u32 uPosition) {
        m_list.back().st.listBoxes = BoxesOf(WordOf(row, uPosition), uPosition);
    }
    void AddProgram(const stDisplayRow& row);
    void AddCards(const stDisplayRow& row);
    void AddCpus(const stDisplayRow& row);
    void AddDebug(const stDisplayRow& row);
    void AddSensorsOf(const XMLElement& sensor);

    const std::set<std::string>& m_setPublished;
    GroupRank m_fnRank;
    std::vector<Entry> m_list;
};

/// The order of a word is that of any of its items.
i32 Rows::RankOf(std::string_view szWord) const {
    i32 iRank = g_iNoRank;
    g_fnForEachItem(Style(), [&](const stStyleItem& item) {
        if (iRank == g_iNoRank && szWord == item.szWord)
            iRank = m_fnRank(g_fnItemName(Style(), item).c_str());
    });
    return iRank;
}

void Rows::AddProgram(const stDisplayRow& row) {
    const auto itOwn = std::find_if(std::begin(g_aszOwnNames), std::end(g_aszOwnNames),
                                    [&](const char* sz) { return !std::strcmp(sz, row.szWord); });
    const bool bOwn = itOwn != std::end(g_aszOwnNames);
    Add({row.szElement, "program", bOwn ? *itOwn : "", CaptionOf(row, 0),
         g_stInfoBlock.auProgramRow[row.uIndex] != 0, true, true},
        RankOf(row, 0), 0);
    AddBoxes(row, 0);
}

void Rows::AddCards(const stDisplayRow& row) {
    const stCardBlock& st = g_stInfoBlock.stCards;
    for (u32 u = 0; u < st.uDisplayCount; ++u) {
        const u32 uCard = static_cast<u32>(st.aiCardOfDisplay[u]);
        const std::string strData = std::string(row.szWord) + "#" + std::to_string(uCard);
        Add({row.szElement, "card " + std::to_string(uCard), strData, CaptionOf(row, u),
             st.aShow[uCard].abRow[row.uIndex] != 0, st.aSupport[u].abRow[row.uIndex] != 0,
             IsPublished(strData)},
            RankOf(row, u), static_cast<i32>(u));
        AddBoxes(row, u);
    }
}

void Rows::AddCpus(const stDisplayRow& row) {
    const stCpuBlock& st = g_stInfoBlock.stCpu;
    for (u32 u = 0; st.bExists && u < st.uDisplayCount; ++u) {
        const std::string strData = std::string(row.szWord) + "#" + std::to_string(u);
        Add({row.szElement, "CPU " + std::to_string(u), strData, CaptionOf(row, u),
             st.aShow[u].abRow[row.uIndex] != 0, st.stSupport.abRow[row.uIndex] != 0, IsPublished(strData)},
            RankOf(row, u), static_cast<i32>(u));
        AddBoxes(row, u);
    }
}

void Rows::AddDebug(const stDisplayRow& row) {
    Add({row.szElement, "debug", "", CaptionOf(row, 0), g_stSettings.bDebugMode != 0, true, true},
        RankOf(row, 0), 0);
}

/// The children of one "Sensor": those that have a definition.
void Rows::AddSensorsOf(const XMLElement& sensor) {
    const char* const szTitle = sensor.Attribute("Title");
    const char* const szMark = szTitle ? std::strrchr(szTitle, '#') : nullptr;
    if (!szMark) return;
    const u32 uGroup = static_cast<u32>(g_fnParseDecimal(szMark + 1));
    const bool bOn = g_fnReadXmlDecimal(&sensor, "IsShow") != 0;
    for (auto* p = sensor.FirstChildElement(); p; p = p->NextSiblingElement()) {
        const auto itTag = g_stSensors.mapTag.find(std::string_view(p->Name()));
        if (itTag == g_stSensors.mapTag.end()) continue;
        const std::string& strName = itTag->second;
        const stSensorDefinition& st = g_stSensors.mapByName.at(strName);
        const std::string strOwn = Narrow(st.wzCaption);
        const std::string strData = strName + "#" + std::to_string(uGroup);
        Add({p->Name(), "sensor " + std::to_string(uGroup), strData,
             st.iTitleTextId >= 0 ? TextOf(static_cast<u32>(st.iTitleTextId))
             : strOwn.empty()     ? strName
                                  : strOwn,
             bOn && g_fnReadXmlDecimal(p, "IsShow") != 0, g_fnIsSensorSupported(uGroup, strName.c_str()),
             IsPublished(strData)},
            RankOf(g_szExtensionWord), static_cast<i32>(m_list.size()));
        m_list.back().st.listBoxes = BoxesOf(st, uGroup);
    }
}

void Rows::AddSensors() {
    const XMLElement* const pInfo = g_fnProfileInfo();
    for (auto* p = pInfo->FirstChildElement("Sensor"); p; p = p->NextSiblingElement("Sensor"))
        AddSensorsOf(*p);
}

void Rows::AddFoot() {
    const char* const szWord = g_fnProgramRowWord(ROW_POWERED_BY);
    Add({g_fnProgramRowElement(ROW_POWERED_BY), "program", "",
         TextOf(g_fnItemBID(Style(), eItem::Text, szWord, "TITLE")),
         g_stInfoBlock.auProgramRow[ROW_POWERED_BY] != 0, true, true},
        std::numeric_limits<i32>::max(), 0);
}

std::vector<RowState> Rows::Take() {
    std::vector<Entry*> listShown;
    for (Entry& st : m_list)
        if (st.st.bOn && st.st.bSupported) listShown.push_back(&st);
    std::stable_sort(listShown.begin(), listShown.end(), [](const Entry* a, const Entry* b) {
        return a->iRank != b->iRank ? a->iRank < b->iRank : a->iInstance < b->iInstance;
    });
    for (size_t u = 0; u < listShown.size(); ++u) listShown[u]->st.uPlace = static_cast<u32>(u + 1);
    std::vector<RowState> listRows;
    for (Entry& st : m_list) listRows.push_back(std::move(st.st));
    return listRows;
}

nlohmann::ordered_json BoxesJson(const RowState& st) {
    auto json = nlohmann::ordered_json::array();
    if (st.uPlace == 0) return json;
    for (const RowBox& stBox : st.listBoxes)
        json.push_back({{"part", stBox.szPart}, {"box", JsonOf(stBox.afBox)}});
    return json;
}

std::string Mark(bool b) { return b ? "yes" : "-"; }

std::set<std::string> PublishedNames(const std::string& strLibrary) {
    std::set<std::string> setNames;
    ControlLibrary stLibrary;
    if (!LoadControlLibrary(strLibrary, stLibrary)) return setNames;
    for (const sensors::PublishedValue& st : sensors::ReadPublished(*Snapshot(stLibrary.pSegment)))
        if (st.bInRoom) setNames.insert(st.strName);
    return setNames;
}

/// The profile that was named, else the one of all programs.
std::string ChosenProfile(const Options& stOptions) {
    if (!stOptions.stProfile.strProfile.empty()) return stOptions.stProfile.strProfile;
    ControlLibrary stLibrary;
    LoadControlLibrary(stOptions.strLibrary, stLibrary);
    return ProfileFor(stLibrary, "");
}

} // namespace

std::vector<RowState> RowsOfLayout(const std::set<std::string>& setPublished) {
    Rows rows(setPublished);
    rows.AddTable();
    rows.AddSensors();
    rows.AddFoot();
    return rows.Take();
}

std::string RowTableText(const std::vector<RowState>& listRows) {
    std::vector<std::vector<std::string>> listCells;
    for (const RowState& st : listRows)
        listCells.push_back({st.strRow, st.strOwner, Mark(st.bOn), Mark(st.bSupported), Mark(st.bPublished),
                             st.uPlace > 0 ? std::to_string(st.uPlace) : "-", st.strCaption});
    return FormatTable(
        {{"ROW"}, {"OF"}, {"ON"}, {"SUPPORTED"}, {"PUBLISHED"}, {"PLACE", Align::Right}, {"CAPTION"}},
        listCells);
}

std::string RowJson(const std::string& strProfile, const std::vector<RowState>& listRows) {
    auto json = nlohmann::ordered_json::array();
    for (const RowState& st : listRows)
        json.push_back(
            {{"row", st.strRow},
             {"of", st.strOwner},
             {"data", st.strData},
             {"on", st.bOn},
             {"supported", st.bSupported},
             {"published", st.bPublished},
             {"place", st.uPlace > 0 ? nlohmann::ordered_json(st.uPlace) : nlohmann::ordered_json()},
             {"caption", st.strCaption},
             {"boxes", BoxesJson(st)}});
    f32 afGround[4] = {};
    if (g_ppStylePanel[0]) TakeBox(*g_ppStylePanel[0], afGround);
    const nlohmann::ordered_json whole = {{"profile", strProfile},
                                          {"canvas", {g_uCanvasW, g_uCanvasH}},
                                          {"ground", JsonOf(afGround)},
                                          {"rows", json}};
    return PrintableJson(whole.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) + "\n";
}

Result ListRows(const Options& stOptions, int&) {
    std::filesystem::path pathData;
    ProfilePlace stProfile;
    Stage stage;
    ValueSource values; // so that boxes are as wide as values are
    const std::string strProfile = ChosenProfile(stOptions);
    Result stResult = FindDataFolder(stOptions.stProfile.strData, pathData);
    if (stResult) stResult = FindProfile(pathData, strProfile, stProfile);
    if (stResult) stResult = stage.Prepare(pathData, stProfile);
    if (stResult) stResult = values.Open("sample", stOptions.strLibrary);
    if (!stResult) return stResult;
    RenderPlan stPlan;
    stPlan.background = Picture(stOptions.stProfile.uWidth, stOptions.stProfile.uHeight);
    stPlan.pathCommon = stage.CommonFolder();
    stPlan.pathSettings = pathData;
    stPlan.bSettingsNamed = !stOptions.stProfile.strData.empty();
    stPlan.strProfile = stProfile.strName;
    stPlan.pValues = &values;
    stPlan.dSeconds = kSampleSeconds;
    if (!TakeMachineSettings(pathData, stPlan.bSettingsNamed))
        std::fprintf(stderr,
                     "orvin-osd: nothing is known of this machine's hardware while no feed runs; a card "
                     "and a CPU that have everything stand in\n");
    const std::set<std::string> setPublished = PublishedNames(stOptions.strLibrary);
    return WithBuiltProfile(stPlan, [&]() -> Result {
        if (g_uLayoutStyle == STYLE_CUSTOM)
            return Result::Fail("the profile " + strProfile +
                                " has items of its own in place of rows; name one of the "
                                "Classic or RV5 style");
        const auto listRows = RowsOfLayout(setPublished);
        const bool bJson = stOptions.stProfile.bJson;
        std::fputs((bJson ? RowJson(strProfile, listRows) : RowTableText(listRows)).c_str(), stdout);
        return {};
    });
}

} // namespace companion
