#include "config/profile/profile_cards.h"

#include "config/profile/profile_document.h"
#include "config/profile/profile_switches.h"
#include "config/settings/setting_binding.h"
#include "config/settings/settings.h"
#include "config/settings/settings_sensors.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <span>
#include <string_view>

#include <tinyxml2.h>

using tinyxml2::XMLElement;

stInfoBlock g_stInfoBlock = {};

namespace {

constexpr u32 c_uSensorsMax = 1024, c_uGroupsMax = 64;
/// One fan stands for all under the first one's rows; the second one's rows go.
constexpr u32 c_uFan1Duty = 6, c_uFan1Rpm = 7, c_uFan2Duty = 8, c_uFan2Rpm = 9;

const XMLElement* First(const XMLElement* pParent, const char* szName = nullptr) {
    return pParent ? pParent->FirstChildElement(szName) : nullptr;
}

bool IsShown(const XMLElement* pElement) { return g_fnReadXmlDecimal(pElement, "IsShow") != 0; }

bool StartsWithDigit(std::string_view text) { return !text.empty() && text[0] >= '0' && text[0] <= '9'; }

/// Number of a slot from a title such as "Card#1". Throws unless it is just that.
u32 SlotNumber(const XMLElement& element, std::string_view szWord) {
    char szTitle[g_uSettingText];
    const stSettingRow aRows[] = {{"Title", "NONE", SETTING_TEXT, TARGET_TEXT, szTitle, std::size(szTitle)}};
    g_fnReadXmlSettings(&element, aRows);
    const std::string_view title(szTitle);
    const std::size_t uMark = std::min(title.find('#'), title.size());
    if (title.substr(0, uMark) != szWord || !StartsWithDigit(title.substr(std::min(uMark + 1, title.size()))))
        throw i32{INFO_TITLE};
    return static_cast<u32>(std::min<u64>(g_fnParseDecimal(szTitle + uMark + 1), g_iNoCard));
}

// --- order -------------------------------------------------------------------------------------------------

void PlaceCard(const XMLElement& card, stCardBlock& st) {
    const u32 uCard = SlotNumber(card, "Card");
    // A card beyond all slots would leave its place open.
    if (uCard >= g_uDisplayMax) throw i32{INFO_TITLE};
    const u32 uPosition = g_fnReadXmlDecimal(&card, "CardDisplayIndex");
    if (uPosition >= g_uDisplayMax) throw i32{INFO_POSITION};
    if (st.aiCardOfDisplay[uPosition] != g_iNoCard) throw i32{INFO_POSITION_TAKEN};
    st.aiCardOfDisplay[uPosition] = static_cast<i32>(uCard);
}

/// Lowest card of the machine that has no position, also none beyond those in use; g_iNoCard if all have one.
i32 LowestFreeCard(const stCardBlock& st, u32 uCardNum) {
    const auto& places = st.aiCardOfDisplay;
    for (i32 iCard = 0; iCard < static_cast<i32>(std::min(uCardNum, g_uDisplayMax)); ++iCard)
        if (std::find(std::begin(places), std::end(places), iCard) == std::end(places)) return iCard;
    return g_iNoCard;
}

/// Fills open positions; the first that finds no card is the end of the display.
void FillOpenPositions(stCardBlock& st, u32 uCardNum) {
    for (u32 u = 0; u < st.uDisplayCount; ++u) {
        if (st.aiCardOfDisplay[u] == g_iNoCard) st.aiCardOfDisplay[u] = LowestFreeCard(st, uCardNum);
        if (st.aiCardOfDisplay[u] == g_iNoCard) st.uDisplayCount = u;
    }
}

void ReadOrder(const XMLElement* pInfo, u32 uCardNum, stCardBlock& st) {
    std::fill(std::begin(st.aiCardOfDisplay), std::end(st.aiCardOfDisplay), g_iNoCard);
    st.uDisplayCount = g_fnReadCardDisplayNum(pInfo);
    const XMLElement* pCard = First(pInfo, "Card");
    for (; pCard; pCard = pCard->NextSiblingElement("Card")) PlaceCard(*pCard, st);
    FillOpenPositions(st, uCardNum);
    st.uDisplayCount = std::min(st.uDisplayCount, uCardNum);
}

// --- flags -------------------------------------------------------------------------------------------------

/// Flags from the children of a block; unknown ones are passed over. Throws if there are none.
void TakeChildren(const XMLElement& block, std::span<const stInfoRow> rows, u8* pFlags) {
    const XMLElement* pRow = First(&block);
    if (!pRow) throw i32{INFO_EMPTY};
    for (; pRow; pRow = pRow->NextSiblingElement()) {
        const auto it = std::find_if(rows.begin(), rows.end(), [pRow](const stInfoRow& row) {
            return std::strcmp(row.szElement, pRow->Name()) == 0;
        });
        if (it != rows.end()) pFlags[it - rows.begin()] = IsShown(pRow);
    }
}

/// Whatever the place of their elements, the two common fan rows have the last word.
void TakeCommonFan(bool bDuty, bool bRpm, stCardFlags& st) {
    if (bDuty) st.abRow[c_uFan1Duty] = 1, st.abRow[c_uFan2Duty] = 0;
    if (bRpm) st.abRow[c_uFan1Rpm] = 1, st.abRow[c_uFan2Rpm] = 0;
}

bool IsAnyShown(const XMLElement& block, const char* szName) {
    bool bShown = false;
    for (const XMLElement* p = First(&block, szName); p; p = p->NextSiblingElement(szName))
        bShown |= IsShown(p);
    return bShown;
}

void ReadWantedRows(const XMLElement* pInfo, stCardBlock& st) {
    std::fill(std::begin(st.aShow), std::end(st.aShow), stCardFlags{});
    const XMLElement* pCard = First(pInfo, "Card");
    for (; pCard; pCard = pCard->NextSiblingElement("Card")) {
        stCardFlags stIgnored{};
        const u32 uCard = SlotNumber(*pCard, "Card");
        stCardFlags& stFlags = uCard < g_uDisplayMax ? st.aShow[uCard] : stIgnored;
        TakeChildren(*pCard, g_aCardRows, stFlags.abRow);
        TakeCommonFan(IsAnyShown(*pCard, "FanDuty"), IsAnyShown(*pCard, "FanRPM"), stFlags);
    }
    // KEEP(profiles): the first card decides for all.
    std::fill(std::begin(st.aShow) + 1, std::end(st.aShow), st.aShow[0]);
}

void ReadSupportedRows(stCardBlock& st) {
    std::fill(std::begin(st.aSupport), std::end(st.aSupport), stCardFlags{});
    for (u32 uPosition = 0; uPosition < st.uDisplayCount; ++uPosition) {
        const u32 uCard = static_cast<u32>(st.aiCardOfDisplay[uPosition]);
        stCardFlags& stFlags = st.aSupport[uPosition];
        for (u32 u = 0; u < g_uCardRows; ++u)
            stFlags.abRow[u] = g_fnIsCardRowSupported(uCard, g_aCardRows[u].wzRow);
        TakeCommonFan(g_fnIsCardRowSupported(uCard, u"Fan Duty"), g_fnIsCardRowSupported(uCard, u"Fan RPM"),
                      stFlags);
    }
}

void ReadCpu(const XMLElement* pInfo, stCpuBlock& st) {
    st = {};
    st.uDisplayCount = 1;
    const XMLElement* pCpu = First(pInfo, "CPU");
    st.bExists = pCpu != nullptr;
    for (; pCpu; pCpu = pCpu->NextSiblingElement("CPU")) {
        const u32 uCpu = std::min(SlotNumber(*pCpu, "CPU"), g_uDisplayMax - 1);
        st.uDisplayCount = std::max(st.uDisplayCount, uCpu + 1);
        TakeChildren(*pCpu, g_aCpuRows, st.aShow[uCpu].abRow);
    }
    // KEEP(profiles): as with cards.
    std::fill(std::begin(st.aShow) + 1, std::end(st.aShow), st.aShow[0]);
    for (u32 u = 0; u < g_uCpuRows; ++u) st.stSupport.abRow[u] = g_fnIsCpuRowSupported(g_aCpuRows[u].wzRow);
}

/// Runs a reader; what it throws becomes a code.
template <class Read> bool Guarded(i32* piCode, Read fnRead) {
    try {
        fnRead();
        return true;
    } catch (i32 iCode) {
        if (piCode) *piCode = iCode;
        return false;
    }
}

// --- sensors -----------------------------------------------------------------------------------------------

/// Number behind the last "#"; false if there is none, or none that a row may have.
bool SensorGroup(const XMLElement& sensor, u32& uGroup) {
    char szTitle[g_uSettingText];
    const stSettingRow aRows[] = {{"Title", "", SETTING_TEXT, TARGET_TEXT, szTitle, std::size(szTitle)}};
    g_fnReadXmlSettings(&sensor, aRows);
    const char* const szMark = std::strrchr(szTitle, '#');
    if (!szMark || !StartsWithDigit(szMark + 1)) return false;
    uGroup = static_cast<u32>(std::min<u64>(g_fnParseDecimal(szMark + 1), c_uGroupsMax));
    return uGroup < c_uGroupsMax;
}

/// Collects the rows. Each sensor of a group is looked at once, however often a profile names it.
class CSensorRows {
  public:
    explicit CSensorRows(std::vector<stSensorRow>& rows) : m_rows(rows) { m_rows.clear(); }

    void Add(const XMLElement& child, u32 uGroup) {
        const auto it = g_stSensors.mapTag.find(std::string_view(child.Name()));
        if (it == g_stSensors.mapTag.end() || !IsShown(&child)) return;
        const std::string& szName = it->second;
        if (!m_setSeen.emplace(uGroup, szName).second || !g_fnIsSensorSupported(uGroup, szName.c_str()))
            return;
        // A sensor keeps its ordinal in every group.
        const u32 uNext = static_cast<u32>(m_mapOrdinal.size());
        const u32 uOrdinal = m_mapOrdinal.try_emplace(szName, uNext).first->second;
        if (uOrdinal < c_uSensorsMax) m_rows.push_back({szName, uOrdinal, uGroup});
    }

  private:
    std::vector<stSensorRow>& m_rows;
    std::set<std::pair<u32, std::string>> m_setSeen;
    std::map<std::string, u32> m_mapOrdinal;
};

} // namespace

const char* g_fnProgramRowElement(u32 uRow) {
    static constexpr const char* aszElements[ROW_COUNT] = {
        "FPS",    "FPSAvg",     "FPSMax",    "FPSMin",     "FPS50P",     "FPS1P",
        "FPS01P", "FrameCount", "Frametime", "SystemTime", "Resolution", "PoweredByOrvinDeck"};
    return aszElements[uRow];
}

u32 g_fnReadCardDisplayNum(const XMLElement* pInfo) {
    return std::min(g_fnReadXmlDecimal(pInfo, "CardDisplayNum", "1"), g_uDisplayMax);
}

bool g_fnReadCardOrder(const XMLElement* pInfo, u32 uCardNum, stCardBlock& stCards, i32* piCode) {
    const bool bRead = Guarded(piCode, [&] { ReadOrder(pInfo, uCardNum, stCards); });
    if (!bRead) stCards.uDisplayCount = 0;
    return bRead;
}

bool g_fnReadCardFlags(const XMLElement* pInfo, stCardBlock& stCards, i32* piCode) {
    return Guarded(piCode, [&] {
        ReadWantedRows(pInfo, stCards);
        ReadSupportedRows(stCards);
    });
}

bool g_fnReadCpuBlock(const XMLElement* pInfo, stCpuBlock& stCpu, i32* piCode) {
    return Guarded(piCode, [&] { ReadCpu(pInfo, stCpu); });
}

void g_fnReadSensorBlock(const XMLElement* pInfo, std::vector<stSensorRow>& listRows) {
    CSensorRows rows(listRows);
    const XMLElement* pSensor = First(pInfo, "Sensor");
    for (; pSensor; pSensor = pSensor->NextSiblingElement("Sensor")) {
        u32 uGroup = 0;
        if (!IsShown(pSensor) || !SensorGroup(*pSensor, uGroup)) continue;
        for (const XMLElement* p = First(pSensor); p; p = p->NextSiblingElement()) rows.Add(*p, uGroup);
    }
}

bool g_fnIsCardRowVisible(const stCardBlock& stCards, u32 uPosition, u32 uRow) {
    if (uPosition >= stCards.uDisplayCount) return false;
    const u32 uCard = static_cast<u32>(stCards.aiCardOfDisplay[uPosition]);
    return stCards.aShow[uCard].abRow[uRow] && stCards.aSupport[uPosition].abRow[uRow];
}

bool g_fnIsCpuRowVisible(const stCpuBlock& stCpu, u32 uCpu, u32 uRow) {
    return uCpu < stCpu.uDisplayCount && stCpu.aShow[uCpu].abRow[uRow] && stCpu.stSupport.abRow[uRow];
}

bool g_fnReadProgramRows(const XMLElement* pInfo, u32 (&auShow)[ROW_COUNT]) {
    bool bComplete = true;
    for (u32 u = 0; u < ROW_COUNT; ++u) {
        const XMLElement* const pRow = First(pInfo, g_fnProgramRowElement(u));
        auShow[u] = pRow ? g_fnReadXmlDecimal(pRow, "IsShow") : u == ROW_POWERED_BY;
        const bool bDemanded = u == ROW_FPS || u == ROW_SYSTEM_TIME || u == ROW_RESOLUTION;
        bComplete = bComplete && (pRow || !bDemanded);
    }
    return bComplete;
}

void g_fnReadDisplayIndexes(const XMLElement* pInfo, std::map<std::string, u32, std::less<>>& map) {
    map.clear();
    const XMLElement* pRow = First(First(pInfo, "DisplayIndex"));
    for (; pRow; pRow = pRow->NextSiblingElement())
        map.insert_or_assign(pRow->Name(), g_fnReadXmlDecimal(pRow, "DisplayIndex", "99"));
}

bool g_fnReadProfileCardOrder() {
    stCardBlock& st = g_stInfoBlock.stCards;
    if (!g_fnReadCardOrder(g_fnProfileInfo(), g_uCardNum, st, nullptr)) return false;
    g_stDisplay.uCards = st.uDisplayCount;
    std::copy(std::begin(st.aiCardOfDisplay), std::end(st.aiCardOfDisplay), g_iCardOfDisplay);
    return true;
}

bool g_fnReadProfileInfoBlock() {
    const XMLElement* const pInfo = g_fnProfileInfo();
    stInfoBlock& st = g_stInfoBlock;
    if (!g_fnReadProgramRows(pInfo, st.auProgramRow) || !g_fnReadCardFlags(pInfo, st.stCards, nullptr) ||
        !g_fnReadCpuBlock(pInfo, st.stCpu, nullptr))
        return false;
    g_stDisplay.uCpus = st.stCpu.uDisplayCount;
    g_fnReadSensorBlock(pInfo, g_stDisplay.listSensorRows);
    return true;
}
