#pragma once
// Owner and directory of everything that is drawn: who exists (ten arrays), who sits where (a tree), who is
// drawn in which batch (layers of draw keys, a list of controls per key).
#include "base/slots.h"
#include "platform/types.h"

#include <map>
#include <memory>
#include <vector>

class CControl;
class CFontUniCode;
class CTextBox_Base;
class CNumBox_Base;
class CFlipBox_Base;
class CPanel_Base;
class CImgBox_Base;
class CLineGraph_Base;
class CVideoBox_Base;
class CPieChart_Base;

/// Controls in drawing or tree order; always the CControl part of an object.
using ControlList = std::vector<CControl*>;
/// Draw keys of a layer, in order of entry.
using KeyList = std::vector<const void*>;

/// Layers in use; the others exist and stay empty.
constexpr u32 g_uLayerFont = 0, g_uLayerColor = 1, g_uLayerTexture = 2, g_uLayerBlur = 4;

/// Entries of the ten arrays.
constexpr u32 g_uFontEntries = 64, g_uTextBoxEntries = 681, g_uNumBoxEntries = 710, g_uFlipBoxEntries = 24,
              g_uPanelEntries = 1126, g_uStylePanelEntries = 64, g_uImgBoxEntries = 64,
              g_uLineGraphEntries = 512, g_uVideoBoxEntries = 8, g_uPieChartEntries = 512;

/// The ten arrays; each is null or has its fixed number of entries. A null entry: no such object.
struct stManagerArrays {
    CFontUniCode** m_ppFont = nullptr;
    CTextBox_Base** m_ppTextBox = nullptr;
    CNumBox_Base** m_ppNumBox = nullptr;
    CFlipBox_Base** m_ppFlipBox = nullptr;
    CPanel_Base** m_ppPanel = nullptr;
    CPanel_Base** m_ppStylePanel = nullptr; ///< addressed by number, not by id
    CImgBox_Base** m_ppImgBox = nullptr;
    CLineGraph_Base** m_ppLineGraph = nullptr;
    CVideoBox_Base** m_ppVideoBox = nullptr;
    CPieChart_Base** m_ppPieChart = nullptr;
};

/// One per rendering surface. It draws nothing and keeps no time. Render thread only.
class COSDManager final {
  public:
    COSDManager() = default;
    ~COSDManager();
    COSDManager(const COSDManager&) = delete;
    COSDManager& operator=(const COSDManager&) = delete;

    /// Allocates the ten arrays. False if one exists already or memory ran out; what was done stays.
    virtual bool m_fnInitialize();
    /// Deletes every object in the ten arrays, then the arrays.
    virtual void m_fnRelease();
    virtual bool m_fnIsInLayer(const void* pKey, u32 uLayer);
    /// False for a null key or one that is in the layer already. Gives the key a draw list.
    virtual bool m_fnAddToLayer(const void* pKey, u32 uLayer);
    /// False for a null key or one that is not in the layer. Frees the key's draw list.
    virtual bool m_fnRemoveFromLayer(const void* pKey, u32 uLayer);
    /// uLayer is taken as it is: below 32.
    virtual KeyList& m_fnGetLayer(u32 uLayer);
    /// True if the control stands in its key's list. Enters a key that is not in the layer yet.
    virtual bool m_fnIsAttached(CControl* pControl, u32 uLayer);
    /// Drawn last in its key. False for null, for a control without a key, or one attached already.
    virtual bool m_fnAttachBack(CControl* pControl, u32 uLayer);
    /// Drawn first in its key; otherwise as m_fnAttachBack.
    virtual bool m_fnAttachFront(CControl* pControl, u32 uLayer);
    virtual bool m_fnDetach(CControl* pControl, u32 uLayer);
    /// Null for a key without a list; an unknown key is entered with none. Valid until the key leaves its
    /// layer.
    virtual ControlList* m_fnGetDrawList(const void* pKey);
    virtual bool m_fnHasParent(CControl* pChild);
    virtual bool m_fnIsChildOf(CControl* pParent, CControl* pChild);
    /// Hangs the child under the parent (null: the root), away from a former one, and places it. 0 on
    /// success, 1 if it hangs there already, -1 for a null child, -2 for a parent that is the child
    /// or stands below it.
    virtual i32 m_fnAddChild(CControl* pParent, CControl* pChild);
    /// Appends all descendants, depth first. False for null only.
    virtual bool m_fnCollectSubtree(CControl* pControl, ControlList& list);
    /// Takes a control and its descendants out of the tree; none is deleted, draw lists stay. -1 for null,
    /// else 0.
    virtual i32 m_fnRemoveSubtree(CControl* pControl);
    /// Children of a control, or of the root for null; null if it never had any.
    virtual ControlList* m_fnGetChildren(CControl* pParent);
    /// Null when unknown or under the root.
    virtual CControl* m_fnGetParent(CControl* pChild);
    /// Places everything anew, from the root's children down.
    virtual void m_fnOnResize();
    /// Places a control that stands in the tree; leaves any other alone.
    virtual void m_fnResolveControl(CControl* pControl);
    virtual void m_fnReserved20();

    /// Deletes what a former layout left, lists and tree with it, and allocates the arrays anew.
    bool m_fnStartOver();

    KeyList m_aLayer[32];
    std::map<const void*, std::unique_ptr<ControlList>> m_mapDrawList;
    std::map<CControl*, std::unique_ptr<ControlList>> m_mapChildren;
    std::map<CControl*, CControl*> m_mapParent;
    stManagerArrays m_stArrays;
};

/// Managers by slot, and the current one.
extern COSDManager* g_apOSDManager[g_uManagerSlots];
extern COSDManager* g_pOSDManager;

/// Copies of the current manager's array pointers; null while there is none.
extern CFontUniCode** g_ppFont;
extern CTextBox_Base** g_ppTextBox;
extern CNumBox_Base** g_ppNumBox;
extern CFlipBox_Base** g_ppFlipBox;
extern CPanel_Base** g_ppPanel;
extern CPanel_Base** g_ppStylePanel;
extern CImgBox_Base** g_ppImgBox;
extern CLineGraph_Base** g_ppLineGraph;
extern CVideoBox_Base** g_ppVideoBox;
extern CPieChart_Base** g_ppPieChart;

/// Makes the manager of g_uManagerSlot and its two batchers the current ones.
void g_fnSelectManager();
/// Goes to slot uSlot, 0 to 19; does nothing for the current one.
void g_fnSetManagerSlot(u32 uSlot);
/// Destroys the managers of all slots; the current manager and the array pointers become null.
void g_fnDestroyManagers();
