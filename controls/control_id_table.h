#pragma once
// The ids of one kind of controls: which place of the kind's array each id has, and the names of the ids.
#include "platform/types.h"

#include <deque>
#include <map>
#include <string>

/// Kinds as registration counts them; no other code is one.
enum ControlIdType : u32 {
    IdTextBox = 1,
    IdNumBox = 2,
    IdLineGraph = 3,
    IdPanel = 4,
    IdImgBox = 5,
    IdFlipBox = 8,
    IdPieChart = 9
};

/// A place in an array that stands for none.
constexpr u32 g_uNoControl = 0xFFFFFFFF;

/// Places in the array of images that ids don't give out: the photo's, and the shutter image's, which has no
/// id.
constexpr u32 g_uPhotoImage = 0, g_uShutterImage = 8;

/// Ids of controls by name.
using ControlNames = std::map<std::string, u64, std::less<>>;

struct stControlIdTable {
    stControlIdTable() = default;
    /// m_fnTake leaves out place n where bit n is set.
    explicit stControlIdTable(u64 u64KeptPlaces) : m_u64Kept(u64KeptPlaces) {}

    /// Place of an id, or g_uNoControl where it is unknown or was given back.
    u32 m_fnFind(u64 u64LB_ID) const;
    /// Next free place below uEntries, oldest one given back first; g_uNoControl when the array is full.
    u32 m_fnTake(u64 u64LB_ID, u32 uEntries);
    /// Takes a place that is kept from m_fnTake. False for an id that has one.
    bool m_fnTakeKept(u64 u64LB_ID, u32 uPtr_ID);
    /// Frees an id's place for the next taker. False for an unknown id.
    bool m_fnGiveBack(u64 u64LB_ID);
    void m_fnClear();

    std::map<u64, u32> m_mapPtrId; ///< LB_ID to uPtr_ID; g_uNoControl after a give-back
    std::map<u32, u64> m_mapLB_ID; ///< the reverse
    u32 m_uNext = 0;
    u64 m_u64Kept = 0;
    std::deque<u32> m_listFree;
    ControlNames m_mapNames; ///< ids by name; m_fnClear leaves them
};

extern stControlIdTable g_stTextBoxIds, g_stNumBoxIds, g_stLineGraphIds, g_stPanelIds, g_stImgBoxIds,
    g_stFlipBoxIds, g_stPieChartIds;
