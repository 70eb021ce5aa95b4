#include "draw/texture.h"

#include "base/timer.h"
#include "draw/image_cache.h"
#include "draw/image_file.h"
#include "platform/folders.h"
#include "platform/input_file.h"
#include "platform/pages.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>

/// Runs of format codes with one pixel size, in ascending order.
struct stPixelSize {
    u32 uFirst, uLast, uBytes;
};
static constexpr stPixelSize g_astPixelSize[] = {
    {1, 2, 1},   {4, 6, 1},   {7, 10, 2},  {11, 12, 4},  {14, 17, 4},  {18, 23, 2}, {24, 28, 4},
    {29, 33, 8}, {34, 37, 4}, {38, 40, 8}, {41, 43, 12}, {44, 46, 16}, {47, 47, 4},
};

u32 g_fnBytesPerPixel(u32 uFormat) noexcept {
    for (const stPixelSize& row : g_astPixelSize)
        if (uFormat >= row.uFirst && uFormat <= row.uLast) return row.uBytes;
    return 0;
}

u32 g_fnBitsPerPixel(u32 uFormat) noexcept {
    switch (uFormat) {
    case 11:
    case 12:
    case 35:
    case 47:
    case 49:
    case 55:
        return 32;
    case 18:
    case 20:
    case 51:
    case 54:
        return 16;
    case 29:
    case 30:
        return 64;
    case 44:
        return 128;
    default:
        return 8;
    }
}

u32 g_fnLevelCount(u32 uWidth, u32 uHeight) noexcept {
    u32 uLevels = 1;
    for (u32 uSide = std::max(uWidth, uHeight); uSide > 1; uSide /= 2) ++uLevels;
    return uLevels;
}

u32 g_fnLevelSide(u32 uSide, u32 uLevel) noexcept { return uLevel < 32 ? std::max(uSide >> uLevel, 1u) : 1u; }

CTexture_Base::CTexture_Base() noexcept { m_timer.Restart(); }

CTexture_Base::~CTexture_Base() { CTexture_Base::m_fnFreeFrames(); }

/// Bytes of a picture; 0 where it has none or where 31 bits can't hold them.
static u32 PictureBytes(u32 uWidth, u32 uHeight, u32 uBytesPerPixel) {
    const u64 uPixels = static_cast<u64>(uWidth) * uHeight;
    if (uPixels > INT32_MAX) return 0;
    const u64 uBytes = uPixels * uBytesPerPixel;
    return uBytes > INT32_MAX ? 0 : static_cast<u32>(uBytes);
}

bool CTexture_Base::m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap) {
    m_fnFreeFrames();
    const u32 uFrameBytes = PictureBytes(uWidth, uHeight, g_fnBytesPerPixel(uFormat));
    if (uFrameBytes == 0 || uFrames == 0 || uFrames > g_uMaxTextureFrames) return false;
    m_uWidth = uWidth;
    m_uHeight = uHeight;
    m_bMipmap = bMipmap;
    m_uLevelCount = bMipmap ? static_cast<i32>(g_fnLevelCount(uWidth, uHeight)) : 1;
    m_uFormat = uFormat;
    m_uBytesPerPixel = g_fnBytesPerPixel(uFormat);
    m_uFrameBytes = uFrameBytes;
    m_uFrameCount = static_cast<i32>(uFrames);
    if (AllocateFrames()) return true;
    m_fnFreeFrames();
    return false;
}

bool CTexture_Base::AllocateFrames() {
    m_pFrames = new (std::nothrow) u8** [static_cast<u32>(m_uFrameCount)] {};
    if (!m_pFrames) return false;
    for (i32 i = 0; i < m_uFrameCount; ++i) {
        m_pFrames[i] = new (std::nothrow) u8* [static_cast<u32>(m_uLevelCount)] {};
        if (!m_pFrames[i] || !AllocateLevels(m_pFrames[i])) return false;
    }
    return true;
}

std::size_t CTexture_Base::LevelBytes(i32 iLevel) const noexcept {
    const u32 uLevel = static_cast<u32>(iLevel);
    return static_cast<std::size_t>(g_fnLevelSide(m_uWidth, uLevel)) * g_fnLevelSide(m_uHeight, uLevel) *
           m_uBytesPerPixel;
}

/// A glyph atlas is blank for the most part, so a level takes memory as it is written.
bool CTexture_Base::AllocateLevels(u8** ppLevels) {
    for (i32 i = 0; i < m_uLevelCount; ++i) {
        if (!ppLevels[i]) ppLevels[i] = platform::AllocatePages(LevelBytes(i));
        if (!ppLevels[i]) return false;
    }
    return true;
}

void CTexture_Base::FreeLevels(u8** ppLevels) noexcept {
    for (i32 i = 0; i < m_uLevelCount; ++i) {
        if (ppLevels[i] != m_pLent) platform::FreePages(ppLevels[i], LevelBytes(i));
        ppLevels[i] = nullptr;
    }
}

bool CTexture_Base::HasFrame(u32 uFrame) const noexcept {
    return m_pFrames && uFrame < static_cast<u32>(m_uFrameCount);
}

void CTexture_Base::m_fnDropLevels(u32 uFrame) noexcept {
    if (HasFrame(uFrame)) FreeLevels(m_pFrames[uFrame]);
    m_pLent = nullptr;
}

void CTexture_Base::m_fnLendLevel(u32 uFrame, u8* pPixels) noexcept {
    m_fnDropLevels(uFrame);
    if (!HasFrame(uFrame)) return;
    m_pLent = m_pFrames[uFrame][0] = pPixels;
}

bool CTexture_Base::m_fnTakeLevels(u32 uFrame) {
    return HasFrame(uFrame) && AllocateLevels(m_pFrames[uFrame]);
}

void CTexture_Base::m_fnFreeFrames() {
    for (i32 i = 0; m_pFrames && i < m_uFrameCount && m_pFrames[i]; ++i) {
        FreeLevels(m_pFrames[i]);
        delete[] m_pFrames[i];
    }
    delete[] m_pFrames;
    m_pFrames = nullptr;
    m_pLent = nullptr;
    m_uFrameCount = 0;
}

bool CTexture_Base::m_fnUploadLevel(const void*, u32, u32) { return true; }

bool CTexture_Base::m_fnUploadFrame(const void* const* ppLevels, u32 uFrame) {
    bool bDone = false;
    for (u32 uLevel = 0; static_cast<i32>(uLevel) < m_uLevelCount; ++uLevel) {
        u8* pOwn = nullptr;
        m_fnGetLevel(&pOwn, uFrame, uLevel);
        bDone = m_fnUploadLevel(ppLevels ? ppLevels[uLevel] : pOwn, uFrame, uLevel);
        if (!bDone) break;
    }
    return bDone;
}

void CTexture_Base::m_fnGetLevel(u8** ppPixels, u32 uFrame, u32 uLevel) {
    const bool bInside = HasFrame(uFrame) && uLevel < static_cast<u32>(m_uLevelCount);
    *ppPixels = bInside ? m_pFrames[uFrame][uLevel] : nullptr;
}

void CTexture_Base::m_fnGetSize(u32* puWidth, u32* puHeight) {
    if (puWidth) *puWidth = m_uWidth;
    if (puHeight) *puHeight = m_uHeight;
}

bool CTexture_Base::m_fnLoadTexture(const char16_t* wzPath) { return g_fnLoadImageFile(*this, wzPath); }

bool CTexture_Base::m_fnLoadCache() { return g_fnLoadImageCache(*this); }

using OutputFile = std::unique_ptr<std::FILE, platform::FileCloser>;

static OutputFile OpenForWrite(const char16_t* wzPath) {
    char szPath[1024];
    if (!platform::NarrowPath(wzPath, szPath, sizeof szPath)) return nullptr;
    return OutputFile(std::fopen(szPath, "wb"));
}

bool CTexture_Base::m_fnReadHeader(const char16_t* wzPath) {
    const platform::InputFile pFile = platform::OpenInput(wzPath);
    u8 au8Header[12];
    return pFile && std::fread(au8Header, sizeof au8Header, 1, pFile.get()) == 1;
}

bool CTexture_Base::m_fnWriteHeader(const char16_t* wzPath) {
    const OutputFile pFile = wzPath ? OpenForWrite(wzPath) : nullptr;
    if (!pFile) return false;
    // KEEP(files): 12 bytes, without the format code that a raw picture has behind its height.
    const u32 auValues[] = {m_uWidth, m_uHeight, static_cast<u32>(m_uFrameCount)};
    u8 au8Header[12];
    for (u32 i = 0; i < sizeof au8Header; ++i)
        au8Header[i] = static_cast<u8>(auValues[i / 4] >> (8 * (i % 4)));
    return std::fwrite(au8Header, sizeof au8Header, 1, pFile.get()) == 1 && std::fflush(pFile.get()) == 0;
}

void CTexture_Base::m_fnAdvance() {
    if (m_uFrameCount < 1) return;
    m_fFrameTime += g_fLastFrameSeconds;
    const f32 fDelay = static_cast<f32>(m_mapFrameDelay[m_uCurrentFrame]) / 1000.0f;
    if (!(m_fFrameTime > fDelay)) return;
    // KEEP(profiles): one step a bind however late it is, and around for ever whatever the file's loop count
    // says.
    m_uCurrentFrame = (m_uCurrentFrame + 1) % static_cast<u32>(m_uFrameCount);
    m_fFrameTime = 0.0f;
}

void CTexture_Base::m_fnBindUnit(u32) {}

u32 CTexture_Base::m_fnGetCurrentFrame() { return m_uCurrentFrame; }

void CTexture_Base::m_fnSetCurrentFrame(u32 uFrame) { m_uCurrentFrame = uFrame; }

void CTexture_Base::m_fnRelease() { m_fnFreeFrames(); }

bool CTexture_Base::m_fnReserved16() { return true; }
