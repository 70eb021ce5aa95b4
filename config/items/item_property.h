#pragma once
// The parsed, validated description of one on-screen item, before a control exists for it.
#include "platform/types.h"

#include <string>

namespace tinyxml2 {
class XMLElement;
}

/// Item type codes; any other code counts as ITEM_NONE.
enum eItemType : u32 {
    ITEM_NONE = 0,
    ITEM_TEXTBOX = 1,
    ITEM_NUMBOX = 2,
    ITEM_LINEGRAPH = 3,
    ITEM_PANEL = 4,
    ITEM_IMAGE = 5,
    ITEM_MEMO = 6,
    ITEM_MIXED = 7, ///< a number box element that shows several numbers: clock, resolution
    ITEM_PIECHART = 9
};

/// What belongs to a type code.
struct stItemType {
    u32 uType;
    const char* szText;    ///< as dumped
    const char* szElement; ///< element name in a profile, empty for none
    u32 uControl;          ///< code of registration of its controls, 0 for none
};

/// Row of a type code; that of ITEM_NONE for unknown codes.
const stItemType& g_fnItemType(u32 uType);

constexpr u32 g_uItemNameBytes = 128;

/// What all items have. Constructor values differ from what parsing gives a missing attribute.
class CItemProperty_Base {
  public:
    CItemProperty_Base();

    /// Stores the link to the complete object; to be called on a copy.
    virtual void m_fnAttachComplete();
    /// Copies the named text ("TEXT_FONT", "TEXT_STRING") out. False, with wzOut untouched, if unknown here.
    virtual bool m_fnQueryString(const char* szKey, std::u16string& wzOut) const;
    /// Dumps the record to the log.
    virtual void m_fnPrintData() const;
    virtual ~CItemProperty_Base() = default;

    /// Sets type code and type text; unknown codes become ITEM_NONE.
    void m_fnSetType(u32 uType);

    void* m_pComplete;   ///< the most derived object, whose class follows from m_uItemType
    u32 m_uReserved = 0; ///< not used
    u32 m_uItemType = ITEM_NONE;
    char m_szItemType[16] = "NONE";
    u64 m_u64ItemId = ~u64{0};
    char m_szItemName[g_uItemNameBytes] = "";  ///< UTF-8, whole, "@" and owner included
    char m_szItemOwner[g_uItemNameBytes] = ""; ///< text behind the last "@", empty without one
    u32 m_bIsShow = 1;
    u32 m_uFrameSizeW = 1, m_uFrameSizeH = 1; ///< canvas pixels, like all lengths here
    i32 m_iFrameAnchor = 1;
    i32 m_iFrameAnchorX = 1, m_iFrameAnchorY = 1;
    u32 m_uContentSizeW = 1, m_uContentSizeH = 1;
    i32 m_iContentAnchor = 1;
    i32 m_iContentAnchorX = 0, m_iContentAnchorY = 0;

  protected:
    CItemProperty_Base(const CItemProperty_Base&) = default;
    CItemProperty_Base& operator=(const CItemProperty_Base&) = default;
};

/// Reads the common attributes. True only for a shown item with a non-empty name that no other item holds;
/// name, owner and id are set then. Null gives false.
bool g_fnParseItemBase(const tinyxml2::XMLElement* pElement, CItemProperty_Base* pItem);
