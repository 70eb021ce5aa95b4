#include "tools/profile/check/layout.h"

#include "base/slots.h"
#include "config/custom/assemble_info.h"
#include "config/items/item_panel.h"
#include "config/items/kinds.h"
#include "config/load.h"
#include "controls/control_ids.h"
#include "controls/img_box.h"
#include "controls/line_graph.h"
#include "controls/num_box.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "controls/pie_chart.h"
#include "controls/text_box.h"
#include "draw/canvas.h"
#include "frame/layout.h"
#include "frame/resources.h"
#include "platform/folders.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"
#include "tools/profile/check/item_values.h"
#include "tools/profile/check/plain_flavour.h"
#include "tools/profile/check/writing.h"
#include "tools/profile/log_catcher.h"
#include "tools/profile/stage.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <tinyxml2.h>

namespace companion {
namespace {

struct stPictureSize {
    u32 uWidth, uHeight;
};
constexpr stPictureSize g_aUsualSizes[] = {
    {1280, 720}, {1920, 1080}, {3840, 2160}, {2560, 1080}, {3440, 1440}};

/// Rows of the smallest usual screen, and what is hard to read there, pixels.
constexpr double g_fSmallRows = 720, g_fTinyPixels = 10;

std::string SizeName(const stPictureSize& st) {
    return std::to_string(st.uWidth) + 'x' + std::to_string(st.uHeight);
}

/// Canvas units, corners.
struct stBox {
    f32 fLeft, fTop, fRight, fBottom;
};

/// What a control stands like in the pictures of all sizes.
struct stStanding {
    std::string strPartly, strWholly; ///< names of sizes
    std::size_t uWholly = 0;          ///< how many
};

/// The usual sizes, and the profile's own one where it names both sides.
std::vector<stPictureSize> SizesToJudge() {
    std::vector<stPictureSize> list(std::begin(g_aUsualSizes), std::end(g_aUsualSizes));
    const bool bOwn = !g_stPreview.bFixedAspect && g_stPreview.uWidth > 0 && g_stPreview.uHeight > 0;
    const auto Equals = [](const stPictureSize& st) {
        return st.uWidth == g_stPreview.uWidth && st.uHeight == g_stPreview.uHeight;
    };
    if (bOwn && std::none_of(list.begin(), list.end(), Equals))
        list.push_back({g_stPreview.uWidth, g_stPreview.uHeight});
    return list;
}

void Append(std::string& strList, const stPictureSize& st) {
    strList += (strList.empty() ? "" : ", ") + SizeName(st);
}

/// Name of the profile in the copy that the layout is built from.
constexpr const char* c_szStagedName = "Checked";
constexpr const char16_t* c_wzStagedName = u"Checked";

/// While it lives, the library looks into another folder.
class OtherDataFolder {
  public:
    explicit OtherDataFolder(const std::filesystem::path& path) {
        platform::CommonDataFolder(m_wzFormer, static_cast<u32>(std::size(m_wzFormer)));
        platform::headless::SetCommonDataFolder(TextOfPath(path));
    }
    ~OtherDataFolder() { platform::headless::SetCommonDataFolder(m_wzFormer); }
    OtherDataFolder(const OtherDataFolder&) = delete;
    OtherDataFolder& operator=(const OtherDataFolder&) = delete;

  private:
    char16_t m_wzFormer[260] = u"";
};

/// Files in the profile's folder that the items name.
std::vector<std::filesystem::path> FilesOf(const std::vector<const ProfileItem*>& items) {
    std::vector<std::filesystem::path> list;
    for (const ProfileItem* p : items)
        for (const char* szAttribute : {"FileName", "ImageFileName"}) {
            const std::string strName =
                FindAttribute(*p->pKind, szAttribute) ? AttributeText(*p, szAttribute) : "";
            const std::filesystem::path path = FileInProfile({}, strName);
            if (!path.empty()) list.push_back(path);
        }
    return list;
}

/// A manager with the layout of the staged profile, for its life.
class BuiltLayout {
  public:
    BuiltLayout();
    ~BuiltLayout();
    BuiltLayout(const BuiltLayout&) = delete;
    BuiltLayout& operator=(const BuiltLayout&) = delete;
    bool IsBuilt() const { return m_bBuilt; }

  private:
    PlainFlavour m_flavour;
    u32 m_uFormerWidth = g_uWidth, m_uFormerHeight = g_uHeight;
    char16_t m_wzFormerProfile[g_uProfileNameUnits];
    bool m_bBuilt = false;
};

BuiltLayout::BuiltLayout() {
    char16_t* const wzGlobal = platform::SharedSegment()->wzGlobalProfile;
    std::memcpy(m_wzFormerProfile, wzGlobal, sizeof m_wzFormerProfile);
    std::memset(wzGlobal, 0, sizeof m_wzFormerProfile);
    std::u16string_view(c_wzStagedName).copy(wzGlobal, g_uProfileNameUnits - 1);
    g_fnStoreSize(g_aUsualSizes[0].uWidth, g_aUsualSizes[0].uHeight);
    std::unique_ptr<COSDManager> pManager(new (std::nothrow) COSDManager);
    if (!pManager || !pManager->m_fnInitialize() || g_apOSDManager[g_uManagerSlot]) return;
    g_apOSDManager[g_uManagerSlot] = pManager.release();
    g_fnSelectManager();
    m_bBuilt = g_fnMakeLayout();
}

BuiltLayout::~BuiltLayout() {
    g_fnReleaseResources();
    std::memcpy(platform::SharedSegment()->wzGlobalProfile, m_wzFormerProfile, sizeof m_wzFormerProfile);
    g_fnStoreSize(m_uFormerWidth, m_uFormerHeight);
}

/// As wide as the values of that name get.
void ShowSample(CNumBox_Base& box, const std::string& strData) {
    if (strData == "FRAME_TIME") return box.m_fnSetFloat(88.88f, 2);
    const bool bShort = strData.find("USAGE_P") != std::string::npos || strData.find("CPU_USAGE") == 0 ||
                        strData.find("GPU_USAGE") == 0 || strData.find("TEMP") != std::string::npos ||
                        strData.find("DUTY") != std::string::npos || strData.find("FPS") == 0;
    box.m_fnSetInt(bShort ? 888 : 8888, 0);
}

/// Controls of an item that can be seen.
std::vector<CControl*> ControlsOf(const stAssembleInfo& st) {
    std::vector<CControl*> list;
    const auto Add = [&](const std::vector<u64>& ids, const stControlIdTable& table, auto* ppArray) {
        for (const u64 u64Id : ids)
            if (CControl* p = g_fnFindCtrlById(u64Id, table, ppArray)) list.push_back(p);
    };
    const CItemProperty_Panel* pPanel = g_fnAsPanel(st.pItem);
    Add(st.listTextBox, g_stTextBoxIds, g_ppTextBox);
    Add(st.listNumBox, g_stNumBoxIds, g_ppNumBox);
    if (pPanel && pPanel->m_uPanelType != 0 && pPanel->m_u8PanelA != 0)
        Add(st.listPanel, g_stPanelIds, g_ppPanel);
    Add(st.listImgBox, g_stImgBoxIds, g_ppImgBox);
    Add(st.listLineGraph, g_stLineGraphIds, g_ppLineGraph);
    Add(st.listPieChart, g_stPieChartIds, g_ppPieChart);
    return list;
}

/// The box around all controls; false without any that has a size.
bool BoxOf(const std::vector<CControl*>& controls, stBox& stAll) {
    bool bAny = false;
    for (CControl* p : controls) {
        f32 x = 0, y = 0, w = 0, h = 0;
        p->m_fnGetPosition(&x, &y, nullptr);
        p->m_fnGetSize(&w, &h);
        if (!(w > 0) || !(h > 0)) continue;
        const stBox st{x, y, x + w, y + h};
        stAll = !bAny ? st
                      : stBox{std::min(stAll.fLeft, st.fLeft), std::min(stAll.fTop, st.fTop),
                              std::max(stAll.fRight, st.fRight), std::max(stAll.fBottom, st.fBottom)};
        bAny = true;
    }
    return bAny;
}

const stAssembleInfo* InfoOf(const ProfileItem& item) {
    CItemProperty_Base* pFound = nullptr;
    if (!g_fnQueryItemProperty(item.strName.c_str(), &pFound)) return nullptr;
    const auto it = g_mapAssembleInfo.find(pFound->m_u64ItemId);
    return it != g_mapAssembleInfo.end() ? &it->second : nullptr;
}

void Judge(const std::vector<CControl*>& controls, const stPictureSize& stSize, stStanding& standing) {
    constexpr f32 c_fSlack = 1; // rounding to whole units is no fault
    stBox st{};
    if (!BoxOf(controls, st)) return;
    const f32 fW = static_cast<f32>(g_uCanvasW), fH = static_cast<f32>(g_uCanvasH);
    if (st.fRight <= 0 || st.fBottom <= 0 || st.fLeft >= fW || st.fTop >= fH) {
        Append(standing.strWholly, stSize);
        ++standing.uWholly;
    } else if (st.fLeft < -c_fSlack || st.fTop < -c_fSlack || st.fRight > fW + c_fSlack ||
               st.fBottom > fH + c_fSlack) {
        Append(standing.strPartly, stSize);
    }
}

void ReportStanding(const ProfileItem& item, const stStanding& st, std::size_t uSizes, Findings& findings) {
    const int iLine = item.pElement->GetLineNum();
    if (!st.strWholly.empty())
        findings.Add(st.uWholly == uSizes ? Severity::Error : Severity::Warning, iLine,
                     ItemTitle(item) + " lies outside the picture at " + st.strWholly);
    if (!st.strPartly.empty())
        findings.Warning(iLine, ItemTitle(item) + " reaches out of the picture at " + st.strPartly);
}

/// Width of a text without its window, which is lost.
double WholeWidth(CTextBox_Base& box) {
    box.m_fnSetFitToText(true);
    box.m_fnBuildText();
    return static_cast<double>(box.m_fnGetTextWidth());
}

/// A window that is narrower than its text cuts it between letters.
void CheckWindow(const ProfileItem& item, const stAssembleInfo& st, Findings& findings) {
    const double fWindow = AttributeNumber(item, "ContentSizeW");
    if (std::string_view(item.pKind->szName) != "TextBox" || fWindow <= 0 || st.listTextBox.empty()) return;
    CTextBox_Base* pBox = g_fnFindCtrlById(st.listTextBox[0], g_stTextBoxIds, g_ppTextBox);
    const double fText = pBox ? WholeWidth(*pBox) : 0;
    if (fText <= fWindow + 0.5) return;
    findings.Warning(AttributeLine(*item.pElement, "ContentSizeW"),
                     ItemTitle(item) + ": the text is " + WholeText(std::ceil(fText)) +
                         " wide and is cut at ContentSizeW " + WholeText(fWindow));
}

void CheckTextSize(const ProfileItem& item, Findings& findings) {
    if (!FindAttribute(*item.pKind, "TextSize")) return;
    const double fSize = AttributeNumber(item, "TextSize");
    const double fPixels = fSize * g_fSmallRows / static_cast<double>(g_uCanvasH);
    if (fSize < 1 || fPixels >= g_fTinyPixels) return;
    findings.Note(AttributeLine(*item.pElement, "TextSize"),
                  ItemTitle(item) + ": TextSize " + AttributeText(item, "TextSize") + " makes " +
                      WholeText(std::floor(fPixels)) + " pixels on a screen of 720 rows");
}

void ShowSamples(const std::vector<const ProfileItem*>& taken) {
    for (const ProfileItem* p : taken) {
        const stAssembleInfo* pInfo = InfoOf(*p);
        if (!pInfo || !pInfo->pItem || pInfo->pItem->m_uItemType != ITEM_NUMBOX) continue;
        for (const u64 u64Id : pInfo->listNumBox)
            if (CNumBox_Base* pBox = g_fnFindCtrlById(u64Id, g_stNumBoxIds, g_ppNumBox))
                ShowSample(*pBox, AttributeText(*p, "DataFullName"));
    }
}

void JudgeAll(const std::vector<const ProfileItem*>& taken, Findings& findings) {
    const std::vector<stPictureSize> sizes = SizesToJudge();
    std::vector<stStanding> list(taken.size());
    ShowSamples(taken);
    for (const stPictureSize& stSize : sizes) {
        g_fnStoreSize(stSize.uWidth, stSize.uHeight);
        g_pOSDManager->m_fnOnResize();
        for (std::size_t i = 0; i < taken.size(); ++i)
            if (const stAssembleInfo* pInfo = InfoOf(*taken[i])) Judge(ControlsOf(*pInfo), stSize, list[i]);
    }
    for (std::size_t i = 0; i < taken.size(); ++i) {
        ReportStanding(*taken[i], list[i], sizes.size(), findings);
        CheckTextSize(*taken[i], findings);
        if (const stAssembleInfo* pInfo = InfoOf(*taken[i])) CheckWindow(*taken[i], *pInfo, findings);
    }
}

/// Images that are no items: the photo and the shutter image.
constexpr u32 c_uOwnImages = 2;

/// Places that an item takes in each of the manager's arrays.
struct stPlaces {
    u32 uTexts = 0, uNumbers = 0, uPanels = 0, uGraphs = 0, uCharts = 0, uImages = 0;
};

void Count(const ProfileItem& item, stPlaces& st) {
    const std::string_view szKind = item.pKind->szName;
    const std::string strData = AttributeText(item, "DataFullName");
    ++st.uPanels; // the frame
    if (szKind == "TextBox" || szKind == "Memo") ++st.uTexts;
    if (szKind == "Panel") ++st.uPanels;
    if (szKind == "LineGraph") ++st.uGraphs;
    if (szKind == "PieChart") ++st.uCharts;
    if (szKind == "Image") ++st.uImages;
    if (szKind != "NumBox") return;
    st.uNumbers += strData == "SYSTEM_TIME" ? 3 : strData == "RESOLUTION" ? 2 : 1;
    st.uTexts += strData == "SYSTEM_TIME" ? 2 : strData == "RESOLUTION" ? 1 : 0;
}

} // namespace

bool CheckCapacity(const std::vector<const ProfileItem*>& taken, const tinyxml2::XMLElement& info,
                   Findings& findings) {
    stPlaces st;
    for (const ProfileItem* p : taken) Count(*p, st);
    const struct {
        u32 uHas, uMost;
        const char* szWhat;
    } aLimits[] = {{st.uTexts, g_uTextBoxEntries, "texts"},
                   {st.uNumbers, g_uNumBoxEntries, "numbers"},
                   {st.uPanels, g_uPanelEntries, "panels, a frame for each item counted in,"},
                   {st.uGraphs, g_uLineGraphEntries, "graphs"},
                   {st.uCharts, g_uPieChartEntries, "charts"},
                   {st.uImages, g_uImgBoxEntries - c_uOwnImages, "images"}};
    bool bAll = true;
    for (const auto& limit : aLimits) {
        if (limit.uHas <= limit.uMost) continue;
        bAll = false;
        findings.Error(info.GetLineNum(), "the layout has " + std::to_string(limit.uHas) + ' ' +
                                              limit.szWhat + " of which " + std::to_string(limit.uMost) +
                                              " can be");
    }
    return bAll;
}

void CheckLayout(const std::vector<const ProfileItem*>& taken, const std::filesystem::path& pathFolder,
                 const std::filesystem::path& pathData, Findings& findings) {
    Stage stage;
    if (!stage.PrepareLayout(pathData, {pathFolder, c_szStagedName}, FilesOf(taken)))
        return findings.Note(0, "the disk takes no copy of the profile; places were not checked");
    const OtherDataFolder folder(stage.CommonFolder());
    LogCatcher log;
    const BuiltLayout layout;
    if (layout.IsBuilt()) return JudgeAll(taken, findings);
    const std::vector<std::string> lines = log.Take();
    if (findings.Passes())
        findings.Error(0,
                       "the layout cannot be built" + (lines.empty() ? std::string() : ": " + lines.back()));
}

} // namespace companion
