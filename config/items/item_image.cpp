#include "config/items/item_image.h"

#include "base/log.h"
#include "config/items/item_reader.h"
#include "config/items/item_report.h"

namespace {

void ApplyOwnKeys(const tinyxml2::XMLElement& element, CItemProperty_ImgBox& item) {
    const stSettingRow aRows[] = {
        // KEEP(profiles): a missing name reads as "X", which is a file name like any other.
        {"ImageFileName", "X", SETTING_TEXT_LOCAL, TARGET_WIDE, item.m_wzImageFilename,
         std::size(item.m_wzImageFilename)},
        {"ImageColorA", "255", SETTING_DECIMAL, TARGET_U8, &item.m_u8ImageA},
        {"TiltDegree", "0", SETTING_FLOAT, TARGET_F32, &item.m_fTiltDegree},
    };
    SettingTable table;
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(&element, table);
    g_fnFreeSettings(table);
}

} // namespace

CItemProperty_ImgBox::CItemProperty_ImgBox() {
    m_pComplete = this;
    m_fnSetType(ITEM_IMAGE);
}

void CItemProperty_ImgBox::m_fnAttachComplete() { m_pComplete = this; }

void CItemProperty_ImgBox::m_fnPrintData() const {
    CItemProperty_Base::m_fnPrintData();
    g_fnPrintWide("IMAGE_FILENAME: ", m_wzImageFilename);
    g_fnLog("IMAGE_FRAME: %i %i %i %i %i\n", static_cast<i32>(m_uFrameSizeW), static_cast<i32>(m_uFrameSizeH),
            m_iFrameAnchor, m_iFrameAnchorX, m_iFrameAnchorY);
    g_fnLog("IMAGE_TILT_DEGREE: %f\n", static_cast<f64>(m_fTiltDegree));
}

bool g_fnReadImgBoxItems(const tinyxml2::XMLElement* pParent) {
    g_fnReadItems<CItemProperty_ImgBox>(pParent, g_fnItemType(ITEM_IMAGE).szElement,
                                        [](const auto& element, auto& item) {
                                            ApplyOwnKeys(element, item);
                                            return g_fnValidateImgBox(item);
                                        });
    return true;
}

void g_fnCheckImageOpacity(const CItemProperty_Base& item, u32 uPercent) {
    if (uPercent > 100) g_fnReportError("item \"%s\" m_u8ImageOpacity", item.m_szItemName);
}

bool g_fnValidateImgBox(CItemProperty_ImgBox& item) {
    item.m_u8ImageOpacity = static_cast<u8>(g_fnAlphaToPercent(item.m_u8ImageA));
    g_fnCheckImageOpacity(item, item.m_u8ImageOpacity);
    if (!*item.m_wzImageFilename) {
        g_fnReportError("item \"%s\" m_wzImageFilename is invalid", item.m_szItemName);
        return false;
    }
    // KEEP(profiles): through whole percent and back, so 128 becomes 127 and 1 becomes 0.
    item.m_u8ImageA = g_fnPercentToAlpha(item.m_u8ImageOpacity);
    return true;
}
