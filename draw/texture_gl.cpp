#include "draw/texture_gl.h"

#include "draw/left_names.h"
#include "draw/pixel_guard.h"
#include "platform/gl_api.h"

#include <algorithm>
#include <new>

struct stFormatRow {
    u32 uCode;
    stGLFormat stFormat;
};

// KEEP(first version): 25, 26, 31 and 39 pair formats that OpenGL does not let go together; nothing uses
// them.
static constexpr stFormatRow g_astFormat[] = {
    {2, {GL_RED, GL_UNSIGNED_BYTE, GL_R8}},
    {11, {GL_RGBA, GL_UNSIGNED_BYTE, GL_RGBA8}},
    {12, {GL_RGBA, GL_UNSIGNED_BYTE, GL_RGBA8}},
    {25, {GL_RG, GL_UNSIGNED_INT, GL_RG16}},
    {26, {GL_RG, GL_UNSIGNED_SHORT, GL_RG16UI}},
    {31, {GL_RGBA, GL_UNSIGNED_SHORT, GL_RGBA8UI}},
    {35, {GL_RED, GL_FLOAT, GL_R32F}},
    {36, {GL_RED, GL_UNSIGNED_INT, GL_R32UI}},
    {38, {GL_RG, GL_FLOAT, GL_RG32F}},
    {39, {GL_RG, GL_UNSIGNED_INT, GL_R32UI}},
    {40, {GL_RG, GL_INT, GL_RG32I}},
    {44, {GL_RGBA, GL_FLOAT, GL_RGBA32F}},
    {47, {GL_BGRA, GL_UNSIGNED_BYTE, GL_RGBA8}},
};

bool g_fnFindGLFormat(u32 uFormat, stGLFormat* pOut) noexcept {
    *pOut = {};
    for (const stFormatRow& row : g_astFormat) {
        if (row.uCode != uFormat) continue;
        *pOut = row.stFormat;
        return true;
    }
    return false;
}

static void SetWrap() {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_R, GL_CLAMP_TO_BORDER);
}

void g_fnSetDrawSampling(u32 uMinFilter) {
    // KEEP(profiles): opaque black beyond the edge, of which half a pixel shows in what is enlarged.
    static const GLfloat afBorder[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_LOD, -1000.0f);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_LOD, 1000.0f);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 1000);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_LOD_BIAS, 0.0f);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_BASE_LEVEL, 0);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_ALWAYS);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_NONE);
    SetWrap();
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, afBorder);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(uMinFilter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
}

CTexture2D_GL::~CTexture2D_GL() { CTexture2D_GL::m_fnRelease(); }

/// A larger one would leave an error in the program's context and show black.
static bool IsSideAllowed(u32 uSide) {
    constexpr u32 c_uLeastLimit = 1024; // every driver takes that much
    GLint iLimit = c_uLeastLimit;
    if (uSide > c_uLeastLimit) glGetIntegerv(GL_MAX_TEXTURE_SIZE, &iLimit);
    return uSide <= static_cast<u32>(iLimit);
}

bool CTexture2D_GL::m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap) {
    CTexture2D_GL::m_fnRelease();
    if (!CTexture_Base::m_fnCreate(uWidth, uHeight, uFormat, uFrames, bMipmap)) return false;
    stGLFormat stFormat;
    g_fnFindGLFormat(uFormat, &stFormat);
    m_uGLFormat = stFormat.m_uFormat;
    m_uGLType = stFormat.m_uType;
    m_iGLInternal = stFormat.m_iInternal;
    if (!IsSideAllowed(uWidth > uHeight ? uWidth : uHeight)) return false;
    m_pNames = new (std::nothrow) u32[uFrames]();
    m_pDrawSampling = new (std::nothrow) bool[uFrames]();
    if (!m_pNames || !m_pDrawSampling) return false;
    m_uNameCount = uFrames;
    glGenTextures(static_cast<GLsizei>(uFrames), m_pNames);
    return true;
}

u32 CTexture2D_GL::MinFilter() const { return m_bMipmap ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR; }

void CTexture2D_GL::SetUploadSampling() const {
    // KEEP(profiles): red here and black at the bind, so black is what is drawn with.
    static const GLfloat afBorder[4] = {1.0f, 0.0f, 0.0f, 1.0f};
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(MinFilter()));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    SetWrap();
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, afBorder);
}

void CTexture2D_GL::SpecifyLevel(const void* pPixels, u32 uLevel) const {
    glTexImage2D(GL_TEXTURE_2D, static_cast<GLint>(uLevel), m_iGLInternal,
                 static_cast<GLsizei>(g_fnLevelSide(m_uWidth, uLevel)),
                 static_cast<GLsizei>(g_fnLevelSide(m_uHeight, uLevel)), 0, m_uGLFormat, m_uGLType, pPixels);
}

bool CTexture2D_GL::m_fnUploadLevel(const void* pPixels, u32 uFrame, u32 uLevel) {
    u8* pOwn = nullptr;
    m_fnGetLevel(&pOwn, uFrame, uLevel);
    if (!pOwn || uFrame >= m_uNameCount) return false;
    if (m_pNames[uFrame] == 0) glGenTextures(1, &m_pNames[uFrame]);
    g_fnGuardUpload();
    glBindTexture(GL_TEXTURE_2D, m_pNames[uFrame]);
    SetUploadSampling();
    m_pDrawSampling[uFrame] = false;
    // KEEP(profiles): with a chain all of it goes each time, whichever level is named; always a whole
    // specification.
    if (m_bMipmap)
        for (i32 i = 0; i < m_uLevelCount; ++i) SpecifyLevel(m_pFrames[uFrame][i], static_cast<u32>(i));
    else
        SpecifyLevel(pPixels, uLevel);
    glBindTexture(GL_TEXTURE_2D, 0);
    return true;
}

/// Levels with so few rows go whole: there a row of many is near.
static constexpr u32 g_uRowsOfWhole = 64;

/// Ahead of the first rows of a level that is specified without any, its size is made known.
void CTexture2D_GL::UploadTopOf(u32 uLevel, u32 uRows) const {
    const u8* const pPixels = m_pFrames[0][uLevel];
    const u32 uHeight = g_fnLevelSide(m_uHeight, uLevel);
    const bool bWhole = uHeight <= g_uRowsOfWhole;
    if (bWhole || m_uTopRows == 0) SpecifyLevel(bWhole ? pPixels : nullptr, uLevel);
    if (bWhole) return;
    const u32 uTop = std::min(uHeight, (uRows >> uLevel) + 2);
    glTexSubImage2D(GL_TEXTURE_2D, static_cast<GLint>(uLevel), 0, 0,
                    static_cast<GLsizei>(g_fnLevelSide(m_uWidth, uLevel)), static_cast<GLsizei>(uTop),
                    m_uGLFormat, m_uGLType, pPixels);
}

bool CTexture2D_GL::m_fnUploadTop(u32 uRows) {
    u8* pOwn = nullptr;
    m_fnGetLevel(&pOwn, 0, 0);
    if (!pOwn || m_uNameCount == 0) return false;
    g_fnGuardUpload();
    glBindTexture(GL_TEXTURE_2D, m_pNames[0]);
    SetUploadSampling();
    m_pDrawSampling[0] = false;
    // Rows of an earlier picture that this one leaves blank.
    uRows = std::max({uRows, m_uTopRows, 1u});
    for (i32 i = 0; i < m_uLevelCount; ++i) UploadTopOf(static_cast<u32>(i), uRows);
    m_uTopRows = uRows;
    glBindTexture(GL_TEXTURE_2D, 0);
    return true;
}

/// Frame 0 stands in for a frame that does not exist.
u32 CTexture2D_GL::ShownFrame() const {
    return m_uFrameCount >= 2 && m_uCurrentFrame < m_uNameCount ? m_uCurrentFrame : 0;
}

u32 CTexture2D_GL::ShownName() const { return m_uNameCount != 0 ? m_pNames[ShownFrame()] : 0; }

void CTexture2D_GL::m_fnBindUnit(u32 uUnit) {
    glActiveTexture(uUnit >= 1 && uUnit <= 7 ? GL_TEXTURE0 + uUnit : GL_TEXTURE0);
    if (m_uFrameCount >= 2) m_fnAdvance();
    const u32 uName = ShownName();
    glBindTexture(GL_TEXTURE_2D, uName);
    // Texture 0 is an object of the application.
    if (uName != 0) g_fnSetDrawSampling(MinFilter());
}

void CTexture2D_GL::m_fnBindKept() {
    const u32 uName = ShownName();
    glBindTexture(GL_TEXTURE_2D, uName);
    if (uName == 0 || m_pDrawSampling[ShownFrame()]) return;
    g_fnSetDrawSampling(MinFilter());
    m_pDrawSampling[ShownFrame()] = true;
}

void CTexture2D_GL::m_fnRelease() {
    if (m_pNames) g_fnDeleteNames(NAMES_TEXTURES, m_uNameCount, m_pNames);
    delete[] m_pNames;
    delete[] m_pDrawSampling;
    m_pNames = nullptr;
    m_pDrawSampling = nullptr;
    m_uNameCount = m_uTopRows = 0;
}

CTexture_Base* CreateTexture_GL() { return new (std::nothrow) CTexture2D_GL; }
