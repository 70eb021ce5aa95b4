#include "config/make/image_records.h"

#include "base/log.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"

#include <memory>
#include <new>

namespace {

void Configure(CImgBox_Base& image, const stImageInit& st) {
    image.m_fnSetColorB(st.u8R, st.u8G, st.u8B, st.u8A);
    image.m_fnSetBoxSize(static_cast<f32>(st.iWidth), static_cast<f32>(st.iHeight));
    image.m_fnSetAnchor(st.iAnchorCode, static_cast<f32>(st.iX), static_cast<f32>(st.iY));
    image.m_fnSetImageFile(st.wzPath, true);
    image.m_fnSetTilted(st.bTilted);
    image.m_fnSetTiltDegree(st.fTiltDegree);
}

/// Null where the file is missing.
std::unique_ptr<CImgBox_Base> NewImage(const stImageInit& st) {
    if (g_fnCheckFileExistence(st.wzPath))
        return std::unique_ptr<CImgBox_Base>(new (std::nothrow) CImgBox_Base);
    g_fnLog("g_fnCheckFileExistence() error\n");
    return nullptr;
}

bool Initialize(CImgBox_Base& image, const stImageInit& st) {
    Configure(image, st);
    if (image.m_fnInitialize()) return true;
    g_fnLog("pImgBox m_fnInitialize() error\n");
    return false;
}

/// Clears the place of this image and of no other.
void Withdraw(u64 u64LB_ID, const CImgBox_Base* pImage) {
    const u32 uPtr_ID = g_stImgBoxIds.m_fnFind(u64LB_ID);
    if (uPtr_ID == g_uNoControl || g_ppImgBox[uPtr_ID] != pImage) return;
    g_ppImgBox[uPtr_ID] = nullptr;
    g_stImgBoxIds.m_fnGiveBack(u64LB_ID);
}

/// The photo has a place of its own.
bool Register(u64 u64LB_ID, CImgBox_Base* pImage) {
    if (u64LB_ID != g_u64PhotoId) return g_fnRegisterXCtrl(IdImgBox, u64LB_ID, pImage) != 0;
    if (!g_ppImgBox || !g_stImgBoxIds.m_fnTakeKept(u64LB_ID, g_uPhotoImage)) return false;
    g_ppImgBox[g_uPhotoImage] = pImage;
    return true;
}

void Create(const stImageInit& st) {
    std::unique_ptr<CImgBox_Base> pImage = NewImage(st);
    // A refused one is logged; it has no owner, so it goes.
    if (!pImage || !Register(st.u64LB_ID, pImage.get())) return;
    if (Initialize(*pImage, st))
        pImage.release();
    else
        Withdraw(st.u64LB_ID, pImage.get());
}

} // namespace

void g_fnCreateImages(std::span<const stImageInit> records) {
    for (const stImageInit& st : records) Create(st);
}
