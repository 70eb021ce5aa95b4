#pragma once
// Update records: each holds a pointer to a 32-bit value and the place of the control that shows it, resolved
// once when a layout is built. Walking a list looks up no name. Render thread only.
#include "platform/types.h"

#include <list>

/// Stands for no control, in block ids and in places.
constexpr u64 g_u64NoBID = ~u64{0};
constexpr i32 g_iNoIndex = -1;

/// A number box alone: place, value (null: demo data), decimals shown, divisor of the raw value.
using UpdateSimpleFunc = void (*)(i32 iNumBox, const u32* pData, u32 uDecimals, u32 uDivisor);
/// A number box whose row is aligned anew in its panel.
using UpdateRowFunc = void (*)(i32 iPanel, i32 iNumBox, i32 iTextBox, const u32* pData, u32 uDecimals,
                               u32 uDivisor);
/// A line graph or a pie chart.
using UpdateGraphFunc = void (*)(i32 iIndex, const u32* pData, u32 uDivisor);

/// Updates one number box.
class CUpdateDataFuncN final {
  public:
    CUpdateDataFuncN() noexcept = default;
    /// A number box alone; panel and label stay absent.
    CUpdateDataFuncN(u64 u64NumBoxBID, i32 iNumBox, const u32* pData, u32 uDecimals, u32 uDivisor) noexcept;

    virtual void operator()();

    u64 m_uPanelBID = g_u64NoBID, m_uTextBoxBID = g_u64NoBID, m_uNumBoxBID = g_u64NoBID;
    i32 m_iPanel = g_iNoIndex, m_iTextBox = g_iNoIndex, m_iNumBox = g_iNoIndex;
    u32 m_uDecimals = 0;
    u32 m_uDivisor = 1;
    UpdateSimpleFunc m_fnSimple = nullptr;
    UpdateRowFunc m_fnRow = nullptr;
    const u32* m_pData = nullptr;
};

/// Updates one line graph or pie chart.
class CUpdateDataFuncL final {
  public:
    virtual void operator()();

    u64 m_uBID = g_u64NoBID;
    i32 m_iIndex = g_iNoIndex;
    u32 m_uDivisor = 1;
    UpdateGraphFunc m_fn = nullptr;
    const u32* m_pData = nullptr;
};

/// Updates one flip box: the value is the number of its state. Without data the first state stays.
class CUpdateDataFuncF final {
  public:
    virtual void operator()();

    u64 m_uBID = g_u64NoBID;
    i32 m_iIndex = g_iNoIndex;
    const u32* m_pData = nullptr;
};

/// Updates an item made of several boxes. Texts and numbers stand from left to right.
class stUpdateMixedData final {
  public:
    virtual void operator()();

    u64 m_auNumBoxBID[3] = {g_u64NoBID, g_u64NoBID, g_u64NoBID};
    u64 m_auTextBoxBID[2] = {g_u64NoBID, g_u64NoBID};
    u64 m_uPanelBID = g_u64NoBID;
    i32 m_aiNumBox[3] = {g_iNoIndex, g_iNoIndex, g_iNoIndex};
    i32 m_aiTextBox[2] = {g_iNoIndex, g_iNoIndex};
    i32 m_iPanel = g_iNoIndex;
    u32 m_uAlignX = 7;       ///< 7 left, 8 centre, 9 right
    i32 m_uAlignOffsetX = 0; ///< canvas units, like the next two
    i32 m_uAlignOffsetY = 0;
    f32 m_uAlignGap = 0;
    void (*m_fn)(stUpdateMixedData& record) = nullptr;
};

/// The six lists. They hold what a layout shows from build to build; a release clears them.
extern std::list<CUpdateDataFuncN> g_listUpdateFPS_N, g_listUpdateData_N;
extern std::list<CUpdateDataFuncL> g_listUpdateFPS_L, g_listUpdateData_L;
extern std::list<CUpdateDataFuncF> g_listUpdateData_F;
extern std::list<stUpdateMixedData> g_listUpdateMixed;
/// Records that a data update has to walk for numbers and graphs, in Custom style for mixed items too.
extern u32 g_uUpdateRecordCount;

/// Empties the six lists and the count.
void g_fnClearUpdateLists() noexcept;
/// Recounts g_uUpdateRecordCount for a layout style.
void g_fnCountUpdateRecords(u32 uStyle) noexcept;

/// Pseudo-random number, 0 to 0x7FFF. A generator of the overlay's own, so that the host's sequence stays as
/// it was.
u32 g_fnRandom() noexcept;
/// Demo value of the update functions, 0 to 9999.
u32 g_fnRandomValue() noexcept;

/// Demo source: draws a number into m_uResult.
class CRandomData {
  public:
    virtual void m_fnGenerate() = 0;
    u32 m_uResult = 0;

  protected:
    ~CRandomData() = default;
};
/// Megabytes, 0 to 16384.
class CRandomData_MB final : public CRandomData {
  public:
    void m_fnGenerate() override;
};
/// Percent, 0 to 100.
class CRandomData_Usage final : public CRandomData {
  public:
    void m_fnGenerate() override;
};

/// Value of a record as the boxes show it: signed. A null pointer gives a demo value.
i32 g_fnUpdateValue(const u32* pData) noexcept;
/// The three forms that the builders put into records. Places without a control are skipped.
void g_fnUpdateNumSimple(i32 iNumBox, const u32* pData, u32 uDecimals, u32 uDivisor);
void g_fnUpdateNumRow(i32 iPanel, i32 iNumBox, i32 iTextBox, const u32* pData, u32 uDecimals, u32 uDivisor);
