#include "controls/img_box.h"

#include "draw/creation_table.h"

#include <algorithm>
#include <cmath>
#include <string_view>

CImgBox_Base::CImgBox_Base() : m_wzFileName{}, m_bFullPath(false), m_bTilted(false), m_fTiltDegree(0) {
    m_fnSetPosition(0, 0, 0);
}

CImgBox_Base::~CImgBox_Base() { CImgBox_Base::m_fnRelease(); }

bool CImgBox_Base::m_fnAllocBuffers() {
    m_uVertexBytes = c_uVertexBytes;
    m_uIndexBytes = c_uIndexBytes;
    return MakeQuad();
}

bool CImgBox_Base::m_fnCreateEntity() {
    const bool bMade = MakeEntity();
    m_fnOnMoved();
    return bMade;
}

bool CImgBox_Base::m_fnCreateMesh() {
    return (m_pMesh || MakeMesh(m_uVertexBytes, m_uIndexBytes)) && m_fnLoadTexture();
}

static CTexture_Base* MakeTexture() {
    return g_stCreationTable.m_fnCreateTexture ? g_stCreationTable.m_fnCreateTexture() : nullptr;
}

/// A side of a box in whole pixels.
static u32 WholeSide(f32 fSide) { return static_cast<u32>(std::clamp(fSide, 0.0f, 65536.0f)); }

bool CImgBox_Base::m_fnLoadTexture() {
    if (m_pTexture) return true;
    if (m_wzFileName[0] == 0) {
        m_fnCreateBlankTexture(WholeSide(m_fBoxW), WholeSide(m_fBoxH));
        return m_pTexture != nullptr;
    }
    std::unique_ptr<CTexture_Base> pTexture(MakeTexture());
    if (!pTexture || !m_fnReadPicture(*pTexture)) return false;
    // The driver has its own copy by now, and nobody asks for the pixels again.
    for (i32 i = 0; i < pTexture->m_uFrameCount; ++i) pTexture->m_fnDropLevels(static_cast<u32>(i));
    m_pTexture = std::move(pTexture);
    return true;
}

bool CImgBox_Base::m_fnReadPicture(CTexture_Base& texture) const {
    static constexpr std::u16string_view c_wzCache = u".cache";
    char16_t wzPath[g_uDataPathCapacity + c_wzCache.size()];
    if (m_bFullPath)
        std::copy(std::begin(m_wzFileName), std::end(m_wzFileName), wzPath);
    else if (!g_fnResolveDataPath(wzPath, m_wzFileName))
        return false;
    char16_t* const pEnd = wzPath + std::u16string_view(wzPath).size();
    *std::copy(c_wzCache.begin(), c_wzCache.end(), pEnd) = 0;
    // KEEP(profiles): one beside the picture wins, whatever the dates; its contents come from the one fixed
    // place.
    if (g_fnCheckFileExistence(wzPath)) return texture.m_fnLoadCache();
    *pEnd = 0;
    return texture.m_fnLoadTexture(wzPath);
}

bool CImgBox_Base::m_fnUploadMesh() {
    m_fnNoteChange();
    return FillMesh();
}

void CImgBox_Base::m_fnRebuild() {
    m_fnBuildQuad();
    m_fnUploadMesh();
}

void CImgBox_Base::m_fnCreateBlankTexture(u32 uWidth, u32 uHeight) {
    m_pTexture.reset(MakeTexture());
    if (!m_pTexture) return;
    const bool bMade = m_pTexture->m_fnCreate(uWidth, uHeight, g_uFormatRGBA8, 1, false) ||
                       m_pTexture->m_fnCreate(uWidth, uHeight, g_uFormatBGRA8, 1, false);
    // Without an upload it would be drawn black.
    if (!bMade || !m_pTexture->m_fnUploadFrame(nullptr, 0)) m_pTexture.reset();
}

void CImgBox_Base::m_fnWriteTexture(const void* pPixels) {
    if (!m_pTexture || !pPixels) return;
    // The memory of a file's frame was given back after its load.
    if (m_pTexture->m_fnTakeLevels(0)) m_pTexture->m_fnUploadLevel(pPixels, 0, 0);
}

void CImgBox_Base::m_fnSetTilted(bool bTilted) { m_bTilted = bTilted; }

void CImgBox_Base::m_fnSetTiltDegree(f32 fDegrees) {
    f32 fTurned = std::fmod(fDegrees, 360.0f);
    if (fTurned < 0) fTurned += 360.0f;
    // A sum that rounds up to a whole turn, and what is no number.
    m_fTiltDegree = fTurned < 360.0f ? fTurned : 0.0f;
}

void CImgBox_Base::m_fnSetBoxSize(f32 w, f32 h) {
    m_fBoxW = w;
    m_fBoxH = h;
    m_fnSetSize(w, h);
}

void CImgBox_Base::m_fnSetImageFile(const char16_t* wzName, bool bFullPath) {
    const std::u16string_view name(wzName ? wzName : u"");
    m_wzFileName[name.size() < g_uDataPathCapacity ? name.copy(m_wzFileName, name.size()) : 0] = 0;
    m_bFullPath = bFullPath;
    if (!m_pTexture) return;
    m_pTexture.reset();
    m_fnLoadTexture();
    m_fnBuildQuad();
    m_fnNoteChange();
}

void CImgBox_Base::m_fnSetDrawKey(const void* pKey) { m_pDrawKey = pKey; }

void CImgBox_Base::m_fnDrawImage(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    // The shutter image has no size between two pictures, and no frame of the program is to pay for it.
    if (m_fBoxW != 0.0f && m_fBoxH != 0.0f) DrawPicture(pBatcher, pWorld, pColor);
}

void CImgBox_Base::m_fnReserved20() {}
void CImgBox_Base::m_fnReserved21() {}

void CImgBox_Base::m_fnRelease() {
    ReleasePicture();
    m_fnNoteChange();
}

void CImgBox_Base::m_fnOnMoved() { PlaceEntity(m_fPosX, m_fPosY, m_fPosZ); }

const void* CImgBox_Base::m_fnGetDrawKey() { return m_pDrawKey; }

void CImgBox_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawImage(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afColor);
}

bool CImgBox_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    if (!m_fnAllocBuffers() || !m_fnCreateEntity() || !m_fnCreateMesh()) return false;
    m_fnBuildQuad();
    return m_fnUploadMesh();
}
