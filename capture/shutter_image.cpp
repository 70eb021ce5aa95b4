#include "capture/shot_request.h"
#include "capture/shutter.h"
#include "controls/img_box.h"

void g_fnShowShutter(const stShutterView& stView) {
    CImgBox_Base* const pImage = g_fnShutterImage();
    if (!pImage) return;
    // Without a size it would still be drawn in each frame.
    const bool bSeen = stView.uSide != 0;
    if (pImage->m_fnIsRenderable() != bSeen) pImage->m_fnSetRenderable(bSeen);
    if (pImage->m_pTexture) pImage->m_pTexture->m_fnSetCurrentFrame(stView.uFrame);
    const f32 fSide = static_cast<f32>(stView.uSide);
    if (pImage->m_fBoxW == fSide && pImage->m_fBoxH == fSide) return;
    pImage->m_fnSetBoxSize(fSide, fSide);
    pImage->m_fnRebuild();
}
