#pragma once
// Image items: the element "Image".
#include "config/items/item_property.h"

class CItemProperty_ImgBox : public virtual CItemProperty_Base {
  public:
    CItemProperty_ImgBox();
    void m_fnAttachComplete() override;
    void m_fnPrintData() const override;

    char16_t m_wzImageFilename[256] = u""; ///< in the profile folder; "X" where the element names none
    /// Goes through whole percent and back: 128 becomes 127, 1 becomes 0.
    u8 m_u8ImageA = 0;
    u8 m_u8ImageOpacity = 0; ///< percent
    f32 m_fTiltDegree = 0;
};

/// Registers each child "Image" that holds. After one with an empty file name nothing more is registered by
/// this call, though the rest is still read and reported. Always true.
bool g_fnReadImgBoxItems(const tinyxml2::XMLElement* pParent);

/// Works out the percentage and reports what is wrong. False for a record that must not be kept.
bool g_fnValidateImgBox(CItemProperty_ImgBox& item);
/// Reports a percentage above 100; the item is kept.
void g_fnCheckImageOpacity(const CItemProperty_Base& item, u32 uPercent);
