// Which cards stand where, and which of their rows, of CPUs and of sensors are shown.
#include "config/settings/settings_sensors.h"
#include "profile_fixture.h"

#include <numeric>

namespace {

struct ProfileCards : ProfileTest {
    static constexpr i32 c_iNone = 99;

    /// The code of reading the order, c_iNone if it was read.
    i32 Order(const std::string& strCards, u32 uCardNum = 20, const std::string& strAttributes = "") {
        i32 iCode = c_iNone;
        const bool bRead = g_fnReadCardOrder(Info(strCards, strAttributes), uCardNum, m_stCards, &iCode);
        EXPECT_EQ(bRead, iCode == c_iNone);
        return iCode;
    }
    i32 Flags(const std::string& strCards, u32 uCardNum = 1, const std::string& strAttributes = "") {
        EXPECT_EQ(Order(strCards, uCardNum, strAttributes), c_iNone);
        i32 iCode = c_iNone;
        const bool bRead = g_fnReadCardFlags(Info(strCards, strAttributes), m_stCards, &iCode);
        EXPECT_EQ(bRead, iCode == c_iNone);
        return iCode;
    }
    i32 Cpu(const std::string& strCpus) {
        i32 iCode = c_iNone;
        const bool bRead = g_fnReadCpuBlock(Info(strCpus), m_stCpu, &iCode);
        EXPECT_EQ(bRead, iCode == c_iNone);
        return iCode;
    }
    static std::string Card(const std::string& strNumber, const std::string& strPosition,
                            const std::string& strRows = "<GPUClock/>") {
        return "<Card Title='Card#" + strNumber + "' CardDisplayIndex='" + strPosition + "'>" + strRows +
               "</Card>";
    }
    std::vector<i32> Positions() const {
        return {m_stCards.aiCardOfDisplay, m_stCards.aiCardOfDisplay + m_stCards.uDisplayCount};
    }
    std::vector<u32> Set(const u8* pFlags, u32 uCount) const {
        std::vector<u32> rows;
        for (u32 u = 0; u < uCount; ++u)
            if (pFlags[u]) rows.push_back(u);
        return rows;
    }
    std::vector<u32> Wanted(u32 uCard) const { return Set(m_stCards.aShow[uCard].abRow, g_uCardRows); }
    std::vector<u32> Supported(u32 uPosition) const {
        return Set(m_stCards.aSupport[uPosition].abRow, g_uCardRows);
    }
    static std::string Shown(const char* szRow) { return std::string("<") + szRow + " IsShow='1'/>"; }

    stCardBlock m_stCards{};
    stCpuBlock m_stCpu{};
};

using Cards = std::vector<i32>;
using Rows = std::vector<u32>;

std::u16string Utf16(const std::string& str) { return {str.begin(), str.end()}; }

} // namespace

// --- order

TEST_F(ProfileCards, WithoutAnyCardElementTheFirstCardIsShown) {
    EXPECT_EQ(Order("", 3), c_iNone);
    EXPECT_EQ(Positions(), (Cards{0}));
    EXPECT_EQ(m_stCards.aiCardOfDisplay[1], g_iNoCard);
    EXPECT_EQ(m_stCards.aiCardOfDisplay[19], g_iNoCard);
}

TEST_F(ProfileCards, AMissingInfoCountsAsOneWithoutChildren) {
    EXPECT_TRUE(g_fnReadCardOrder(nullptr, 2, m_stCards, nullptr));
    EXPECT_EQ(Positions(), (Cards{0}));
    EXPECT_TRUE(g_fnReadCardFlags(nullptr, m_stCards, nullptr));
    EXPECT_TRUE(g_fnReadCpuBlock(nullptr, m_stCpu, nullptr));
    EXPECT_EQ(g_fnReadCardDisplayNum(nullptr), 1u);
}

TEST_F(ProfileCards, CardsStandAtTheirPositions) {
    EXPECT_EQ(Order(Card("0", "2") + Card("2", "0") + Card("1", "1"), 3, "CardDisplayNum='3'"), c_iNone);
    EXPECT_EQ(Positions(), (Cards{2, 1, 0}));
}

TEST_F(ProfileCards, AMissingCardDisplayIndexIsTheFirstPosition) {
    EXPECT_EQ(Order("<Card Title='Card#1'/>", 2), c_iNone);
    EXPECT_EQ(Positions(), (Cards{1}));
}

TEST_F(ProfileCards, CardDisplayNumIs1WhereMissingAndHeldTo20) {
    EXPECT_EQ(g_fnReadCardDisplayNum(Info("")), 1u);
    EXPECT_EQ(g_fnReadCardDisplayNum(Info("", "CardDisplayNum='5'")), 5u);
    EXPECT_EQ(g_fnReadCardDisplayNum(Info("", "CardDisplayNum='21'")), 20u);
    EXPECT_EQ(g_fnReadCardDisplayNum(Info("", "CardDisplayNum='-1'")), 20u);
    EXPECT_EQ(g_fnReadCardDisplayNum(Info("", "CardDisplayNum='0'")), 0u);
    EXPECT_EQ(Order("", 40, "CardDisplayNum='21'"), c_iNone);
    Cards all(20);
    std::iota(all.begin(), all.end(), 0);
    EXPECT_EQ(Positions(), all);
}

TEST_F(ProfileCards, OpenPositionsTakeTheLowestCardsWithoutOne) {
    EXPECT_EQ(Order(Card("1", "1"), 4, "CardDisplayNum='4'"), c_iNone);
    EXPECT_EQ(Positions(), (Cards{0, 1, 2, 3}));
    // A card that waits beyond the display has a position too.
    EXPECT_EQ(Order(Card("0", "9"), 4, "CardDisplayNum='2'"), c_iNone);
    EXPECT_EQ(Positions(), (Cards{1, 2}));
}

TEST_F(ProfileCards, TheCountShrinksWhereCardsRunOut) {
    EXPECT_EQ(Order(Card("0", "5"), 2, "CardDisplayNum='4'"), c_iNone);
    EXPECT_EQ(Positions(), (Cards{1}));
    EXPECT_EQ(Order(Card("0", "1"), 1, "CardDisplayNum='2'"), c_iNone);
    EXPECT_EQ(Positions(), (Cards{}));
    EXPECT_EQ(Order("", 0), c_iNone);
    EXPECT_EQ(Positions(), (Cards{}));
}

TEST_F(ProfileCards, ThreeCardElementsOnAOneCardMachineLeaveADisplayCountOf1) {
    EXPECT_EQ(Order(Card("0", "0") + Card("1", "1") + Card("2", "2"), 1, "CardDisplayNum='3'"), c_iNone);
    EXPECT_EQ(Positions(), (Cards{0}));
}

TEST_F(ProfileCards, ACardWhoseTitleBeginsInLowerCaseFailsTheWholeRead) {
    EXPECT_EQ(Order(Card("0", "0") + "<Card Title='card#1' CardDisplayIndex='1'/>"), INFO_TITLE);
    EXPECT_EQ(m_stCards.uDisplayCount, 0u);
}

TEST_F(ProfileCards, OtherTitlesFailToo) {
    for (const char* szTitle : {"", "Card", "Card#", "Card#x", "Card#-1", " Card#0", "Card #0", "Cards#0",
                                "#0", "CPU#0", "Card#20", "Card#256", "Card#99999999999999999999"})
        EXPECT_EQ(Order(std::string("<Card Title='") + szTitle + "'/>"), INFO_TITLE) << szTitle;
    EXPECT_EQ(Order("<Card/>"), INFO_TITLE) << "the default is NONE";
    EXPECT_EQ(Order(Card("19", "0")), c_iNone);
    EXPECT_EQ(Order(Card("0#1", "0")), c_iNone);
}

TEST_F(ProfileCards, APositionOf20OrMoreFails) {
    EXPECT_EQ(Order(Card("0", "19")), c_iNone);
    EXPECT_EQ(Order(Card("0", "20")), INFO_POSITION);
    EXPECT_EQ(Order(Card("0", "-1")), INFO_POSITION);
}

TEST_F(ProfileCards, TwoCardElementsWithCardDisplayIndex0FailTheReadWithCode2) {
    EXPECT_EQ(Order(Card("0", "0") + Card("1", "0")), INFO_POSITION_TAKEN);
    EXPECT_EQ(INFO_POSITION_TAKEN, 2);
    EXPECT_EQ(INFO_POSITION, 1);
    EXPECT_EQ(INFO_TITLE, 0);
    EXPECT_EQ(INFO_EMPTY, -1);
}

TEST_F(ProfileCards, AFailureWithoutAPlaceForItsCodeIsAFailureAllTheSame) {
    EXPECT_FALSE(g_fnReadCardOrder(Info("<Card/>"), 1, m_stCards, nullptr));
    EXPECT_FALSE(g_fnReadCpuBlock(Info("<CPU/>"), m_stCpu, nullptr));
}

// --- flags of cards

TEST_F(ProfileCards, EachRowHasItsElementItsFlagAndItsSupport) {
    for (u32 u = 0; u < g_uCardRows; ++u) {
        headless::ClearSettings();
        Support(u"Card\\0\\" + std::u16string(g_aCardRows[u].wzRow));
        EXPECT_EQ(Flags(Card("0", "0", Shown(g_aCardRows[u].szElement))), c_iNone);
        EXPECT_EQ(Wanted(0), (Rows{u})) << g_aCardRows[u].szElement;
        EXPECT_EQ(Supported(0), (Rows{u})) << g_aCardRows[u].szElement;
        for (u32 uRow = 0; uRow < g_uCardRows; ++uRow)
            EXPECT_EQ(g_fnIsCardRowVisible(m_stCards, 0, uRow), uRow == u);
    }
}

TEST_F(ProfileCards, RowsOfPinsAreNumbered) {
    for (u32 u = 0; u < 6; ++u) {
        const std::string strPin = "Pin" + std::to_string(u + 1), strName = "PIN_" + std::to_string(u + 1);
        EXPECT_EQ(g_aCardRows[26 + u].szElement, strPin);
        EXPECT_EQ(g_aCardRows[32 + u].szElement, "MB" + strPin);
        EXPECT_EQ(g_aCardRows[26 + u].szDataName, "POWER_" + strName);
        EXPECT_EQ(g_aCardRows[32 + u].szDataName, "POWER_MB_" + strName);
        EXPECT_EQ(std::u16string(g_aCardRows[26 + u].wzRow), u"Pin " + Utf16(std::to_string(u + 1)));
        EXPECT_EQ(std::u16string(g_aCardRows[32 + u].wzRow), u"MB Pin " + Utf16(std::to_string(u + 1)));
    }
}

TEST_F(ProfileCards, EveryDataNameOfARowIsBuiltIn) {
    for (const stInfoRow& row : g_aCardRows)
        EXPECT_TRUE(g_fnIsBuiltInDataName(row.szDataName)) << row.szDataName;
    for (const stInfoRow& row : g_aCpuRows)
        EXPECT_TRUE(g_fnIsBuiltInDataName(row.szDataName)) << row.szDataName;
}

TEST_F(ProfileCards, ARowIsVisibleOnlyIfWantedAndSupported) {
    Support(u"Card\\0\\GPU Clock");
    Support(u"Card\\0\\GPU Usage");
    EXPECT_EQ(Flags(Card("0", "0", Shown("GPUClock") + Shown("GPUTemperature"))), c_iNone);
    EXPECT_TRUE(g_fnIsCardRowVisible(m_stCards, 0, 0));
    EXPECT_FALSE(g_fnIsCardRowVisible(m_stCards, 0, 1));
    EXPECT_FALSE(g_fnIsCardRowVisible(m_stCards, 0, 2));
    EXPECT_FALSE(g_fnIsCardRowVisible(m_stCards, 1, 0)) << "no such position";
}

TEST_F(ProfileCards, AMissingIsShowHidesARowAndUnknownRowsArePassedOver) {
    EXPECT_EQ(
        Flags(Card("0", "0", "<GPUClock/><Coffee IsShow='1'/><GPUUsage IsShow='9'/><gpuclock IsShow='1'/>")),
        c_iNone);
    EXPECT_EQ(Wanted(0), (Rows{2}));
}

TEST_F(ProfileCards, ACardWithoutAnyChildFailsWithCodeMinus1) {
    EXPECT_EQ(Flags(Card("0", "0", "")), INFO_EMPTY);
    EXPECT_EQ(Flags(Card("0", "0", "<!-- none -->text")), INFO_EMPTY);
    EXPECT_EQ(Flags(Card("0", "0") + Card("1", "1", "")), INFO_EMPTY);
    EXPECT_EQ(Flags(Card("0", "0", "<Coffee/>")), c_iNone);
}

TEST_F(ProfileCards, OnlyTheFirstCardsElementDecidesForAllCards) {
    EXPECT_EQ(
        Flags(Card("0", "0", Shown("GPUClock")) + Card("1", "1", Shown("GPUUsage")), 2, "CardDisplayNum='2'"),
        c_iNone);
    for (u32 uCard = 0; uCard < g_uDisplayMax; ++uCard) EXPECT_EQ(Wanted(uCard), (Rows{0})) << uCard;
}

TEST_F(ProfileCards, TheFirstCardIsTheOneWithNumber0WhereverItStands) {
    EXPECT_EQ(
        Flags(Card("1", "0", Shown("GPUUsage")) + Card("0", "1", Shown("GPUClock")), 2, "CardDisplayNum='2'"),
        c_iNone);
    EXPECT_EQ(Wanted(0), (Rows{0}));
    EXPECT_EQ(Wanted(1), (Rows{0}));
    EXPECT_EQ(Flags(Card("1", "0", Shown("GPUUsage")), 2), c_iNone);
    EXPECT_EQ(Wanted(0), (Rows{}));
    EXPECT_EQ(Wanted(1), (Rows{}));
}

TEST_F(ProfileCards, SupportIsThatOfTheCardAtEachPosition) {
    Support(u"Card\\0\\GPU Clock");
    Support(u"Card\\1\\GPU Usage");
    EXPECT_EQ(Flags(Card("0", "1") + Card("1", "0"), 2, "CardDisplayNum='2'"), c_iNone);
    EXPECT_EQ(Supported(0), (Rows{2}));
    EXPECT_EQ(Supported(1), (Rows{0}));
    EXPECT_EQ(Supported(2), (Rows{}));
}

TEST_F(ProfileCards, FanDutyAndFan2DutySetLeaveTheSecondFanHidden) {
    EXPECT_EQ(Flags(Card("0", "0", Shown("FanDuty") + Shown("Fan2Duty"))), c_iNone);
    EXPECT_EQ(Wanted(0), (Rows{6}));
    EXPECT_EQ(Flags(Card("0", "0", Shown("Fan2Duty") + Shown("FanDuty"))), c_iNone);
    EXPECT_EQ(Wanted(0), (Rows{6}));
}

TEST_F(ProfileCards, FanRpmActsOnTheSpeedsAlone) {
    EXPECT_EQ(
        Flags(Card("0", "0", Shown("FanRPM") + Shown("Fan2RPM") + Shown("Fan2Duty") + Shown("Fan3RPM"))),
        c_iNone);
    EXPECT_EQ(Wanted(0), (Rows{7, 8, 11}));
}

TEST_F(ProfileCards, AHiddenCommonFanRowChangesNothing) {
    EXPECT_EQ(Flags(Card("0", "0", "<FanDuty IsShow='0'/><FanRPM/>" + Shown("Fan2Duty") + Shown("Fan2RPM"))),
              c_iNone);
    EXPECT_EQ(Wanted(0), (Rows{8, 9}));
}

TEST_F(ProfileCards, TheCommonFanRowsActOnTheSupportLikewise) {
    for (const char16_t* wzRow : {u"Fan Duty", u"Fan2 Duty", u"Fan RPM", u"Fan2 RPM"})
        Support(u"Card\\0\\" + std::u16string(wzRow));
    EXPECT_EQ(Flags(Card("0", "0")), c_iNone);
    EXPECT_EQ(Supported(0), (Rows{6, 7}));
    Support(u"Card\\0\\Fan Duty", 0);
    Support(u"Card\\0\\Fan RPM", 0);
    EXPECT_EQ(Flags(Card("0", "0")), c_iNone);
    EXPECT_EQ(Supported(0), (Rows{8, 9}));
}

// --- CPU

TEST_F(ProfileCards, WithoutACpuElementThereIsOneCpuWithoutRows) {
    Support(u"CPU\\CPU Clock");
    EXPECT_EQ(Cpu(""), c_iNone);
    EXPECT_EQ(m_stCpu.uDisplayCount, 1u);
    EXPECT_FALSE(m_stCpu.bExists);
    EXPECT_FALSE(g_fnIsCpuRowVisible(m_stCpu, 0, 0));
}

TEST_F(ProfileCards, EachCpuRowHasItsElementItsFlagAndItsSupport) {
    for (u32 u = 0; u < g_uCpuRows; ++u) {
        headless::ClearSettings();
        Support(u"CPU\\" + std::u16string(g_aCpuRows[u].wzRow));
        EXPECT_EQ(Cpu("<CPU Title='CPU#0'>" + Shown(g_aCpuRows[u].szElement) + "</CPU>"), c_iNone);
        EXPECT_TRUE(m_stCpu.bExists);
        for (u32 uRow = 0; uRow < g_uCpuRows; ++uRow)
            EXPECT_EQ(g_fnIsCpuRowVisible(m_stCpu, 0, uRow), uRow == u);
    }
}

TEST_F(ProfileCards, ACpuRowNeedsIsShowAndSupport) {
    Support(u"CPU\\CPU Clock");
    EXPECT_EQ(Cpu("<CPU Title='CPU#0'><CPUClock/><CPUUsage IsShow='1'/></CPU>"), c_iNone);
    EXPECT_FALSE(g_fnIsCpuRowVisible(m_stCpu, 0, 0));
    EXPECT_FALSE(g_fnIsCpuRowVisible(m_stCpu, 0, 2));
}

TEST_F(ProfileCards, TheHighestCpuTitleGivesTheCount) {
    const auto cpu = [](const char* szNumber) {
        return "<CPU Title='CPU#" + std::string(szNumber) + "'><CPUClock IsShow='1'/></CPU>";
    };
    EXPECT_EQ(Cpu(cpu("0")), c_iNone);
    EXPECT_EQ(m_stCpu.uDisplayCount, 1u);
    EXPECT_EQ(Cpu(cpu("3") + cpu("0") + cpu("1")), c_iNone);
    EXPECT_EQ(m_stCpu.uDisplayCount, 4u);
    for (const char* szNumber : {"19", "20", "9999"}) {
        EXPECT_EQ(Cpu(cpu(szNumber)), c_iNone);
        EXPECT_EQ(m_stCpu.uDisplayCount, 20u) << szNumber;
    }
}

TEST_F(ProfileCards, TheFirstCpusRowsGoForAll) {
    Support(u"CPU\\CPU Clock");
    Support(u"CPU\\CPU Usage");
    EXPECT_EQ(
        Cpu("<CPU Title='CPU#1'><CPUUsage IsShow='1'/></CPU><CPU Title='CPU#0'><CPUClock IsShow='1'/></CPU>"),
        c_iNone);
    EXPECT_TRUE(g_fnIsCpuRowVisible(m_stCpu, 0, 0));
    EXPECT_TRUE(g_fnIsCpuRowVisible(m_stCpu, 1, 0));
    EXPECT_FALSE(g_fnIsCpuRowVisible(m_stCpu, 1, 2));
    EXPECT_FALSE(g_fnIsCpuRowVisible(m_stCpu, 2, 0)) << "no such CPU";
}

TEST_F(ProfileCards, AWrongCpuTitleFailsLikeACards) {
    for (const char* szTitle : {"NONE", "cpu#0", "CPU", "CPU#", "CPU#a", "Card#0"})
        EXPECT_EQ(Cpu(std::string("<CPU Title='") + szTitle + "'><CPUClock/></CPU>"), INFO_TITLE) << szTitle;
    EXPECT_EQ(Cpu("<CPU><CPUClock/></CPU>"), INFO_TITLE);
    EXPECT_EQ(Cpu("<CPU Title='CPU#0'/>"), INFO_EMPTY);
}

// --- sensors

namespace {

struct ProfileSensors : ProfileCards {
    void SetUp() override {
        ProfileCards::SetUp();
        Sensor(u"a", u"Pump", u"PUMP");
        Sensor(u"b", u"Flow", u"FLOW");
        Support(u"Sensor\\0\\PUMP");
        Support(u"Sensor\\0\\FLOW");
        Support(u"Sensor\\3\\PUMP");
        g_fnReadSensorDefinitions();
    }
    void TearDown() override {
        headless::ClearSettings();
        g_fnReadSensorDefinitions();
        ProfileCards::TearDown();
    }
    /// "PUMP#3:0 ...": name, group, ordinal.
    std::string Shown(const std::string& strSensors) {
        std::vector<stSensorRow> rows = {{"OLD", 0, 0}};
        g_fnReadSensorBlock(Info(strSensors), rows);
        std::string str;
        for (const stSensorRow& row : rows)
            str +=
                row.szBaseName + "#" + std::to_string(row.uGroup) + ":" + std::to_string(row.uOrdinal) + " ";
        return str;
    }
    static std::string Block(const std::string& strTitle, const std::string& strRows = "<Pump IsShow='1'/>") {
        return "<Sensor Title='" + strTitle + "' IsShow='1'>" + strRows + "</Sensor>";
    }
};

} // namespace

TEST_F(ProfileSensors, GroupAndOrdinalOfEachShownSensor) {
    EXPECT_EQ(Shown(Block("S#3") + Block("S#0", "<Flow IsShow='1'/><Pump IsShow='1'/>")),
              "PUMP#3:0 FLOW#0:1 PUMP#0:0 ");
}

TEST_F(ProfileSensors, BlockAndRowNeedIsShow) {
    EXPECT_EQ(Shown("<Sensor Title='S#0'><Pump IsShow='1'/></Sensor>"), "");
    EXPECT_EQ(Shown("<Sensor Title='S#0' IsShow='0'><Pump IsShow='1'/></Sensor>"), "");
    EXPECT_EQ(Shown(Block("S#0", "<Pump/>")), "");
    EXPECT_EQ(Shown(Block("S#0", "<Pump IsShow='2'/>")), "PUMP#0:0 ");
}

TEST_F(ProfileSensors, ASensorWithoutSupportInItsGroupIsNotShown) {
    EXPECT_EQ(Shown(Block("S#3", "<Flow IsShow='1'/><Pump IsShow='1'/>")), "PUMP#3:0 ");
    EXPECT_EQ(Shown(Block("S#1")), "");
}

TEST_F(ProfileSensors, TheDigitsBehindTheLastMarkAreTheGroup) {
    EXPECT_EQ(Shown(Block("S#0#3")), "PUMP#3:0 ");
    EXPECT_EQ(Shown(Block("#3x")), "PUMP#3:0 ");
    for (const char* szTitle : {"", "S", "S3", "S#", "S#x", "S#-0", "S#64", "S#4294967299"})
        EXPECT_EQ(Shown(Block(szTitle)), "") << szTitle;
    EXPECT_EQ(Shown("<Sensor IsShow='1'><Pump IsShow='1'/></Sensor>"), "");
    Support(u"Sensor\\63\\PUMP");
    EXPECT_EQ(Shown(Block("S#63")), "PUMP#63:0 ");
}

TEST_F(ProfileSensors, UnknownTagsArePassedOver) {
    EXPECT_EQ(Shown(Block("S#0", "<PUMP IsShow='1'/><Coffee IsShow='1'/><Pump IsShow='1'/>")), "PUMP#0:0 ");
}

TEST_F(ProfileSensors, ASensorOfAGroupIsShownOnce) {
    EXPECT_EQ(Shown(Block("S#0", "<Pump IsShow='1'/><Pump IsShow='1'/>") + Block("T#0")), "PUMP#0:0 ");
}

TEST_F(ProfileSensors, ALayoutHasPlacesFor1024Sensors) {
    std::string strRows;
    for (u32 u = 0; u < 1025; ++u) {
        const std::string strName = "X" + std::to_string(u);
        g_stSensors.mapTag.insert_or_assign(strName, strName);
        Support(u"Sensor\\0\\" + Utf16(strName));
        strRows += "<" + strName + " IsShow='1'/>";
    }
    std::vector<stSensorRow> rows;
    g_fnReadSensorBlock(Info(Block("S#0", strRows)), rows);
    ASSERT_EQ(rows.size(), 1024u);
    EXPECT_EQ(rows.back().szBaseName, "X1023");
    EXPECT_EQ(rows.back().uOrdinal, 1023u);
}

// --- rows of the program

namespace {

struct ProfileRows : ProfileTest {
    static constexpr const char* c_szDemanded = "<FPS/><SystemTime/><Resolution/>";
    bool Read(const std::string& strRows) { return g_fnReadProgramRows(Info(strRows), m_auShow); }

    u32 m_auShow[ROW_COUNT] = {};
};

} // namespace

TEST_F(ProfileRows, EachRowHasItsElement) {
    for (u32 u = 0; u < ROW_COUNT; ++u) {
        const std::string strRow = std::string("<") + g_fnProgramRowElement(u) + " IsShow='1'/>";
        ASSERT_TRUE(Read(strRow + c_szDemanded + "<PoweredByOrvinDeck IsShow='0'/>"));
        for (u32 uRow = 0; uRow < ROW_COUNT; ++uRow)
            EXPECT_EQ(m_auShow[uRow], uRow == u ? 1u : 0u) << g_fnProgramRowElement(u);
    }
}

TEST_F(ProfileRows, AMissingIsShowHides) {
    for (u32 u = 0; u < ROW_COUNT; ++u) {
        ASSERT_TRUE(Read(std::string(c_szDemanded) + "<" + g_fnProgramRowElement(u) + "/>"));
        EXPECT_EQ(m_auShow[u], 0u) << g_fnProgramRowElement(u);
    }
}

TEST_F(ProfileRows, AnAbsentPoweredByOrvinDeckLeavesTheRowOn) {
    ASSERT_TRUE(Read(c_szDemanded));
    for (u32 u = 0; u < ROW_COUNT; ++u) EXPECT_EQ(m_auShow[u], u == ROW_POWERED_BY ? 1u : 0u);
}

TEST_F(ProfileRows, FpsSystemTimeAndResolutionMustExist) {
    EXPECT_FALSE(Read("<SystemTime/><Resolution/>"));
    EXPECT_FALSE(Read("<FPS/><Resolution/>"));
    EXPECT_FALSE(Read("<FPS/><SystemTime/>"));
    EXPECT_FALSE(g_fnReadProgramRows(nullptr, m_auShow));
}

TEST_F(ProfileRows, DisplayIndexesByRow) {
    std::map<std::string, u32, std::less<>> map = {{"Old", 1}};
    g_fnReadDisplayIndexes(Info("<DisplayIndex><FPS DisplayIndex='3'/><GPUClock/><Any DisplayIndex='0'/>"
                                "<FPS DisplayIndex='4'/></DisplayIndex>"),
                           map);
    EXPECT_EQ(map, (std::map<std::string, u32, std::less<>>{{"Any", 0}, {"FPS", 4}, {"GPUClock", 99}}));
    g_fnReadDisplayIndexes(Info(""), map);
    EXPECT_TRUE(map.empty());
    g_fnReadDisplayIndexes(nullptr, map);
    EXPECT_TRUE(map.empty());
}

// --- the active profile

namespace {

struct ProfileInfoBlock : ProfileTest {};

} // namespace

TEST_F(ProfileInfoBlock, OrderAndRowsReachTheLayout) {
    CardNum(3);
    Support(u"Card\\2\\GPU Clock");
    Support(u"CPU\\CPU Usage");
    Support(u"Sensor\\5\\PUMP");
    Sensor(u"a", u"Pump", u"PUMP");
    g_fnReadSensorDefinitions();
    ReadCustom(
        "<Info CardDisplayNum='2'><FPS IsShow='1'/><SystemTime/><Resolution/>"
        "<Card Title='Card#2' CardDisplayIndex='0'><GPUUsage/></Card>"
        "<Card Title='Card#0' CardDisplayIndex='1'><GPUClock IsShow='1'/></Card>"
        "<CPU Title='CPU#1'><CPUUsage IsShow='1'/></CPU><CPU Title='CPU#0'><CPUUsage IsShow='1'/></CPU>"
        "<Sensor Title='S#5' IsShow='1'><Pump IsShow='1'/></Sensor></Info>");
    g_fnReadProfileSwitches();
    ASSERT_TRUE(g_fnReadProfileCardOrder());
    EXPECT_EQ(g_stDisplay.uCards, 2u);
    EXPECT_EQ(g_iCardOfDisplay[0], 2);
    EXPECT_EQ(g_iCardOfDisplay[1], 0);
    EXPECT_EQ(g_iCardOfDisplay[2], g_iNoCard);
    ASSERT_TRUE(g_fnReadProfileInfoBlock());
    EXPECT_EQ(g_stInfoBlock.auProgramRow[ROW_FPS], 1u);
    EXPECT_TRUE(g_fnIsCardRowVisible(g_stInfoBlock.stCards, 0, 0));
    EXPECT_FALSE(g_fnIsCardRowVisible(g_stInfoBlock.stCards, 1, 0));
    EXPECT_EQ(g_stDisplay.uCpus, 2u);
    EXPECT_TRUE(g_fnIsCpuRowVisible(g_stInfoBlock.stCpu, 1, 2));
    ASSERT_EQ(g_stDisplay.listSensorRows.size(), 1u);
    EXPECT_EQ(g_stDisplay.listSensorRows[0].szBaseName, "PUMP");
    EXPECT_EQ(g_stDisplay.listSensorRows[0].uGroup, 5u);
    headless::ClearSettings();
    g_fnReadSensorDefinitions();
}

TEST_F(ProfileInfoBlock, AWrongPieceStopsIt) {
    const char* const szRows = "<FPS/><SystemTime/><Resolution/>";
    g_fnReadProfileSwitches();
    ReadCustom(std::string("<Info>") + szRows + "<Card Title='x'/></Info>");
    EXPECT_FALSE(g_fnReadProfileCardOrder());
    ReadCustom(std::string("<Info>") + szRows + "<Card Title='Card#0'/></Info>");
    EXPECT_TRUE(g_fnReadProfileCardOrder());
    EXPECT_FALSE(g_fnReadProfileInfoBlock());
    ReadCustom(std::string("<Info>") + szRows + "<CPU/></Info>");
    EXPECT_FALSE(g_fnReadProfileInfoBlock());
    ReadCustom("<Info><FPS/></Info>");
    EXPECT_FALSE(g_fnReadProfileInfoBlock());
    ReadCustom(std::string("<Info>") + szRows + "</Info>");
    EXPECT_TRUE(g_fnReadProfileInfoBlock());
}
