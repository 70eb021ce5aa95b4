#include "controls/video_box.h"

#include "draw/channel_order.h"
#include "draw/creation_table.h"
#include "draw/draw_keys.h"

#include <new>

static const char g_cVideoLastIdentity = 0;
constinit const void* const g_keyVideoLast = &g_cVideoLastIdentity;

CVideoBox_Base::CVideoBox_Base() : m_fFrameW(0), m_fFrameH(0), m_uPixelFormat(0), m_uConvertBytes(0) {
    m_fnSetPosition(0, 0, 0);
}

CVideoBox_Base::~CVideoBox_Base() { CVideoBox_Base::m_fnRelease(); }

bool CVideoBox_Base::m_fnAllocBuffers() {
    m_uVertexBytes = c_uVertexBytes;
    m_uIndexBytes = c_uIndexBytes;
    return MakeQuad();
}

bool CVideoBox_Base::m_fnBuildQuad() {
    if (!HasPicture()) return false;
    FitQuad(m_iAnchorCode);
    return true;
}

bool CVideoBox_Base::m_fnCreateEntity() { return MakeEntity(); }

bool CVideoBox_Base::m_fnCreateMesh() {
    return MakeMesh(m_uVertexBytes, m_uIndexBytes) &&
           m_fnCreateTexture(static_cast<u32>(m_fFrameW), static_cast<u32>(m_fFrameH));
}

bool CVideoBox_Base::m_fnUploadMesh() {
    m_fnNoteChange();
    return FillMesh();
}

bool CVideoBox_Base::m_fnCreateTexture(u32 uWidth, u32 uHeight) {
    m_pTexture.reset(g_stCreationTable.m_fnCreateTexture ? g_stCreationTable.m_fnCreateTexture() : nullptr);
    if (!m_pTexture) return false;
    for (const u32 uFormat : {g_uFormatRGBA8, g_uFormatBGRA8}) {
        m_uPixelFormat = uFormat;
        // Blank pixels are handed over at once: a texture without any would be drawn in opaque black.
        if (m_pTexture->m_fnCreate(uWidth, uHeight, uFormat, 1, false))
            return m_pTexture->m_fnUploadFrame(nullptr, 0);
    }
    return false;
}

std::size_t CVideoBox_Base::m_fnFrameBytes() const {
    return std::size_t{static_cast<u32>(m_fFrameW)} * static_cast<u32>(m_fFrameH) * 4;
}

/// Null without memory.
const u8* CVideoBox_Base::m_fnConvert(const u8* pPixels) {
    const std::size_t uBytes = m_fnFrameBytes();
    if (!m_pConvertBuffer || m_uConvertBytes < uBytes) {
        m_pConvertBuffer.reset(new (std::nothrow) u8[uBytes]);
        m_uConvertBytes = m_pConvertBuffer ? uBytes : 0;
    }
    // Red and blue change places, so this is the way from either format to the other.
    if (m_pConvertBuffer) g_fnReorderChannels(pPixels, "BGRA", m_pConvertBuffer.get(), "RGBA", uBytes / 4);
    return m_pConvertBuffer.get();
}

void CVideoBox_Base::m_fnWriteFrame(const u8* pPixels, u32 uFormat) {
    // The texture's own size is what will be read; a frame size set since then may be smaller.
    if (!m_pTexture || !pPixels || m_pTexture->m_uFrameBytes > m_fnFrameBytes()) return;
    const u8* const pShown = uFormat == m_uPixelFormat ? pPixels : m_fnConvert(pPixels);
    if (pShown) m_pTexture->m_fnUploadLevel(pShown, 0, 0);
}

void CVideoBox_Base::m_fnSetBoxSize(f32 w, f32 h) {
    m_fBoxW = w;
    m_fBoxH = h;
    m_fnSetSize(w, h);
}

void CVideoBox_Base::m_fnSetFrameSize(f32 w, f32 h) {
    m_fFrameW = w;
    m_fFrameH = h;
}

void CVideoBox_Base::m_fnSetDrawKey(const void* pKey) { m_pDrawKey = pKey; }

void CVideoBox_Base::m_fnDrawVideo(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    DrawPicture(pBatcher, pWorld, pColor);
}

void CVideoBox_Base::m_fnReserved14() {}

void CVideoBox_Base::m_fnReleaseTexture() {
    if (!m_pTexture) return;
    m_pTexture->m_fnRelease();
    m_pTexture.reset(); // one without objects would be drawn in opaque black
    m_fnNoteChange();
}

void CVideoBox_Base::m_fnRelease() {
    ReleasePicture();
    m_pConvertBuffer.reset();
    m_uConvertBytes = 0;
    m_fnNoteChange();
}

void CVideoBox_Base::m_fnOnMoved() { PlaceEntity(m_fPosX, m_fPosY, m_fPosZ); }

const void* CVideoBox_Base::m_fnGetDrawKey() { return m_pDrawKey; }

void CVideoBox_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawVideo(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afColor);
}

bool CVideoBox_Base::m_fnInitialize() {
    return !m_fnIsRenderable() || (m_fnAllocBuffers() && m_fnCreateEntity() && m_fnCreateMesh() &&
                                   m_fnBuildQuad() && m_fnUploadMesh());
}
