#pragma once
// Which rows of the info block a profile shows: of the program, of each card and CPU, of sensors. The readers
// fill records of the caller's, so that a layout and the companion's questions don't meet; "Info" may be
// null, which reads as one without children.
#include "config/settings/sensor_table.h"
#include "platform/types.h"
#include "shared/info_rows.h"

#include <map>
#include <string>
#include <vector>

namespace tinyxml2 {
class XMLElement;
}

/// Display position without a card.
constexpr i32 g_iNoCard = 256;

/// Flags of the rows of one card or CPU, 0 or 1.
struct stCardFlags {
    u8 abRow[g_uCardRows];
};
struct stCpuFlags {
    u8 abRow[g_uCpuRows];
};

/// The cards of a profile.
struct stCardBlock {
    u32 uDisplayCount;                   ///< positions in use
    i32 aiCardOfDisplay[g_uDisplayMax];  ///< card number by position; g_iNoCard if unused
    stCardFlags aShow[g_uDisplayMax];    ///< by card number
    stCardFlags aSupport[g_uDisplayMax]; ///< by position
};
/// The CPUs of a profile.
struct stCpuBlock {
    u32 uDisplayCount;               ///< 1 to 20
    bool bExists;                    ///< there is a "CPU" at all
    stCpuFlags aShow[g_uDisplayMax]; ///< by CPU number
    stCpuFlags stSupport;
};

/// Why a block fails.
enum eInfoError : i32 {
    INFO_EMPTY = -1,        ///< an element without rows
    INFO_TITLE = 0,         ///< a title that is not the word, "#" and the number of a slot
    INFO_POSITION = 1,      ///< a display position of 20 or more
    INFO_POSITION_TAKEN = 2 ///< two cards at one position
};

/// Which card stands where, for a machine of uCardNum cards: what "CardDisplayNum" and the titles and
/// positions of all "Card" say; positions left open take the lowest cards that have none. False, with a code
/// at piCode (or null), if the profile is wrong.
bool g_fnReadCardOrder(const tinyxml2::XMLElement* pInfo, u32 uCardNum, stCardBlock& stCards, i32* piCode);
/// Rows that the profile wants and, by the order read before, rows that the cards support.
bool g_fnReadCardFlags(const tinyxml2::XMLElement* pInfo, stCardBlock& stCards, i32* piCode);
bool g_fnReadCpuBlock(const tinyxml2::XMLElement* pInfo, stCpuBlock& stCpu, i32* piCode);
/// Sensors to show, each once, in document order. Needs the sensor maps.
void g_fnReadSensorBlock(const tinyxml2::XMLElement* pInfo, std::vector<stSensorRow>& listRows);

/// True if a row is wanted and supported: of the card at a display position, of a CPU.
bool g_fnIsCardRowVisible(const stCardBlock& stCards, u32 uPosition, u32 uRow);
bool g_fnIsCpuRowVisible(const stCpuBlock& stCpu, u32 uCpu, u32 uRow);

/// Rows of the program itself, in the order of the profile's elements.
enum eProgramRow : u32 {
    ROW_FPS,
    ROW_FPS_AVG,
    ROW_FPS_MAX,
    ROW_FPS_MIN,
    ROW_FPS_50P,
    ROW_FPS_1P,
    ROW_FPS_01P,
    ROW_FRAME_COUNT,
    ROW_FRAME_TIME,
    ROW_SYSTEM_TIME,
    ROW_RESOLUTION,
    ROW_POWERED_BY,
    ROW_COUNT
};
/// Element of a row.
const char* g_fnProgramRowElement(u32 uRow);
/// "IsShow" of each row, 0 or not. False if "FPS", "SystemTime" or "Resolution" is missing; of the others a
/// missing one is hidden, "PoweredByOrvinDeck" shown.
bool g_fnReadProgramRows(const tinyxml2::XMLElement* pInfo, u32 (&auShow)[ROW_COUNT]);

constexpr u32 g_uNoDisplayIndex = 99;
/// Places of rows in the display order, by element name of the row; g_uNoDisplayIndex where the element names
/// none. A later child overrides an earlier one.
void g_fnReadDisplayIndexes(const tinyxml2::XMLElement* pInfo, std::map<std::string, u32, std::less<>>& map);

/// The info block of the active layout.
struct stInfoBlock {
    u32 auProgramRow[ROW_COUNT];
    stCardBlock stCards;
    stCpuBlock stCpu;
};
extern stInfoBlock g_stInfoBlock;

/// Card order and count of the active profile, from g_uCardNum; also into g_stDisplay.uCards and
/// g_iCardOfDisplay. All styles with fixed tables.
bool g_fnReadProfileCardOrder();
/// Rows of the program, cards, CPUs and sensors of the active profile, after the order; also into
/// g_stDisplay.uCpus and g_stDisplay.listSensorRows.
bool g_fnReadProfileInfoBlock();
/// "CardDisplayNum" of "Info", 1 if missing, held to 20; what Custom reads of the cards.
u32 g_fnReadCardDisplayNum(const tinyxml2::XMLElement* pInfo);
