// A font's life: sizes, buffers, fonts of the rasteriser, calibration.
#include "font/font_unicode.h"

#include "base/numbers.h"
#include "font/kept_glyphs.h"
#include "platform/pages.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

std::map<std::u16string, i32> g_mapFontScalePercent;

/// a * b / c, rounded half up; for values that are not negative.
static i32 MulDiv(i32 a, i32 b, i32 c) {
    const i64 i = (static_cast<i64>(a) * b + c / 2) / c;
    return static_cast<i32>(std::min<i64>(i, std::numeric_limits<i32>::max()));
}

template <typename T> static bool AllocZeroed(T*& pOut, u64& uBytes, u64 uWanted) {
    if (!pOut) pOut = reinterpret_cast<T*>(platform::AllocatePages(uBytes = uWanted));
    return pOut != nullptr;
}

template <typename T> static void Free(T*& pArray, u64 uBytes) {
    platform::FreePages(reinterpret_cast<u8*>(pArray), uBytes);
    pArray = nullptr;
}

static void FreeFont(platform::GlyphFont*& hFont) {
    platform::DestroyGlyphFont(hFont);
    hFont = nullptr;
}

CFontUniCode::~CFontUniCode() { CFontUniCode::m_fnRelease(); }

void CFontUniCode::m_fnRelease() {
    DropBuffers();
    FreeFont(m_hFont);
    FreeFont(m_hFontCalib);
}

/// All that depends on the sizes, glyphs included.
void CFontUniCode::DropBuffers() noexcept {
    m_mapCharIndex.clear();
    m_vecWaiting.clear();
    Free(m_pChars, m_uRecordBytes);
    platform::DestroyGlyphDevice(m_hDC);
    m_hDC = nullptr;
    platform::DestroyGlyphBitmap(m_hBitmap);
    m_hBitmap = nullptr;
    Free(m_pAtlas, m_uAtlasBytes);
    m_packedAtlas.Drop();
    m_uAtlasRows = 0;
    Free(m_pCanvas, m_uCellBytes);
    m_uInkFirst = m_uInkEnd = 0;
    Free(m_pCharBuff, m_uCellBytes);
    Free(m_pDib, m_uDibBytes);
}

void CFontUniCode::m_fnRest() noexcept {
    platform::ForgetPages(m_pCanvas, m_uCellBytes);
    platform::ForgetPages(m_pCharBuff, m_uCellBytes);
    platform::ForgetPages(m_pDib, m_uDibBytes);
    platform::RestGlyphDevice(m_hDC);
    platform::RestGlyphFont(m_hFont);
    platform::RestGlyphFont(m_hFontCalib);
}

void CFontUniCode::m_fnPackAtlas() noexcept {
    if (m_pAtlas && m_packedAtlas.Take(m_pAtlas, static_cast<std::size_t>(m_uTexW) * m_uAtlasRows))
        Free(m_pAtlas, m_uAtlasBytes);
}

u8* CFontUniCode::m_fnTakeAtlas() noexcept {
    if (m_packedAtlas.IsEmpty()) return m_pAtlas;
    if (AllocZeroed(m_pAtlas, m_uAtlasBytes, m_uAtlasBytes)) m_packedAtlas.Give(m_pAtlas);
    return m_pAtlas;
}

bool CFontUniCode::m_fnGivePackedAtlas(CPackedPixels& packed) noexcept {
    m_fnPackAtlas();
    packed = std::move(m_packedAtlas);
    return !packed.IsEmpty();
}

void CFontUniCode::m_fnSetLayout(u32 uWidth, u32 uHeight, u32 uLayers) {
    if (uWidth != m_uLayoutW || uHeight != m_uLayoutH) DropBuffers();
    m_uLayoutW = uWidth;
    m_uLayoutH = uHeight;
    m_uLayoutD = uLayers;
    m_uNum_Characters = uWidth * uHeight;
}

void CFontUniCode::m_fnSetTexSize(u32 uWidth, u32 uHeight) {
    // KEEP(profiles): the height of a cell follows from the columns too, and rows that do not divide the
    // atlas drift away from their texture coordinates.
    const u32 uCellW = m_uLayoutW ? uWidth / m_uLayoutW : 0, uCellH = m_uLayoutW ? uHeight / m_uLayoutW : 0;
    const i32 iCellW = static_cast<i32>(uCellW), iCellH = static_cast<i32>(uCellH);
    if (uWidth != m_uTexW || uHeight != m_uTexH || iCellW != m_iCanvasW || iCellH != m_iCanvasH)
        DropBuffers();
    m_uTexW = uWidth;
    m_uTexH = uHeight;
    m_fInvTexW = 1.0f / static_cast<f32>(uWidth);
    m_fInvTexH = 1.0f / static_cast<f32>(uHeight);
    m_iCharBuffW = m_iCanvasW = iCellW;
    m_iCharBuffH = m_iCanvasH = iCellH;
    m_fCellW = static_cast<f32>(m_iCharBuffW);
    m_fCellH = static_cast<f32>(m_iCharBuffH);
    m_uFontSize = uCellW / 2;
    m_uDescent = m_uFontSize / 8;
    iGDI_DrawRefY = static_cast<i32>(m_uFontSize + m_uDescent);
}

void CFontUniCode::m_fnGetTexSize(u32* puWidth, u32* puHeight) {
    if (puWidth) *puWidth = m_uTexW;
    if (puHeight) *puHeight = m_uTexH;
}

void CFontUniCode::m_fnGetInvTexSize(f32* pX, f32* pY) {
    if (pX) *pX = m_fInvTexW;
    if (pY) *pY = m_fInvTexH;
}

void CFontUniCode::m_fnBindTexture(u32) {}

void CFontUniCode::m_fnSetFontName(const char16_t* wzName) { m_wzFontName = wzName ? wzName : u""; }

void CFontUniCode::m_fnGetFontName(std::u16string* pOut) { *pOut = m_wzFontName; }

void CFontUniCode::m_fnSetFontWeight(i32 iWeight) { m_iFontWeight = std::clamp(iWeight, 0, 1000); }

void CFontUniCode::m_fnSetScale(f32 fScale) {
    if (fScale > 0.0f) m_fScale = fScale;
}

f32 CFontUniCode::m_fnGetScale() { return m_fScale; }

/// Whether the sizes belong together, and everything that follows divides and allocates sensibly.
bool CFontUniCode::SizesAreUsable() const noexcept {
    constexpr u64 uMost = 0x7FFFFFFF;
    if (!m_uLayoutW || !m_uLayoutH || !m_uFontSize) return false;
    const u32 uCellW = m_uTexW / m_uLayoutW, uCellH = m_uTexH / m_uLayoutW;
    return static_cast<i32>(uCellW) == m_iCanvasW && static_cast<i32>(uCellH) == m_iCanvasH &&
           m_iCanvasH > 0 && static_cast<u64>(m_uTexW) * m_uTexH <= uMost &&
           static_cast<u64>(uCellW) * uCellH <= uMost / 8 &&
           static_cast<u64>(m_uLayoutW) * m_uLayoutH <= uMost / sizeof(stFontChar);
}

bool CFontUniCode::m_fnAllocBuffers() { return SizesAreUsable() && AllocCanvas() && AllocRecordsAndAtlas(); }

bool CFontUniCode::AllocCanvas() {
    const u64 uCell = static_cast<u64>(m_iCanvasW) * static_cast<u64>(m_iCanvasH);
    if (!AllocZeroed(m_pCanvas, m_uCellBytes, uCell)) return false;
    if (!m_pCharBuff) {
        if (!AllocZeroed(m_pCharBuff, m_uCellBytes, uCell)) return false;
        m_hDC = platform::CreateGlyphDevice();
    }
    if (!AllocZeroed(m_pDib, m_uDibBytes, uCell * 8)) return false;
    if (!m_hBitmap) m_hBitmap = platform::CreateGlyphBitmap(m_hDC, m_iCanvasW, m_iCanvasH);
    return m_hBitmap != nullptr;
}

bool CFontUniCode::AllocRecordsAndAtlas() {
    const u64 uRecords = static_cast<u64>(m_uNum_Characters) + 2;
    return AllocZeroed(m_pChars, m_uRecordBytes, uRecords * sizeof *m_pChars) &&
           (m_fnTakeAtlas() || AllocZeroed(m_pAtlas, m_uAtlasBytes, static_cast<u64>(m_uTexW) * m_uTexH));
}

bool CFontUniCode::m_fnCreateGdiFont(platform::GlyphFont** ppFont, u32 uSize, const char16_t* wzName) {
    i32 iDpiX = 0, iDpiY = 0;
    platform::GlyphDeviceDpi(m_hDC, &iDpiX, &iDpiY);
    m_fDpiScaleX = static_cast<f32>(iDpiX) / 96.0f;
    m_fDpiScaleY = static_cast<f32>(iDpiY) / 96.0f;
    const i32 iPoints = g_fnTruncate<i32>(static_cast<f32>(uSize) / m_fDpiScaleY);
    // A font out of a file has its glyphs, and so has one that comes again; it may never draw one.
    const platform::stGlyphFontRequest stRequest = {uSize, MulDiv(iPoints, iDpiY, 72), m_iFontWeight, wzName,
                                                    m_bFromFile || g_fnIsKindKept(*this)};
    FreeFont(*ppFont);
    *ppFont = platform::CreateGlyphFont(m_hDC, stRequest);
    return *ppFont != nullptr;
}

/// The face of that name, or the default one. A size above the whole atlas, which a file may name, would cost
/// time and show nothing: more than a cell is never seen.
static bool CreateNamedFont(CFontUniCode& font, platform::GlyphFont** ppFont, u32 uWanted) {
    const u32 uSize = std::min(uWanted, font.m_uTexW);
    return font.m_fnCreateGdiFont(ppFont, uSize, font.m_wzFontName.c_str()) ||
           font.m_fnCreateGdiFont(ppFont, uSize, nullptr);
}

bool CFontUniCode::m_fnCreateTexture() { return true; }

bool CFontUniCode::m_fnInitialize(bool bFromFile) {
    if (!m_fnAllocBuffers()) return false;
    m_bFromFile = bFromFile;
    CreateNamedFont(*this, &m_hFont, m_uFontSize);
    bool bDone = m_fnCreateTexture();
    if (bFromFile) {
        bDone = CreateNamedFont(*this, &m_hFontCalib, m_uCalibSize);
    } else if (!g_fnTakeKeptMeasures(*this)) {
        m_fnAddSpaces();
        m_fnMeasureDescent();
        m_fnCalibrate();
    }
    const auto it = g_mapFontScalePercent.find(m_wzFontName);
    if (it != g_mapFontScalePercent.end())
        m_fnSetScale(static_cast<f32>(std::clamp(it->second, 25, 400)) / 100.0f);
    return bDone;
}

void CFontUniCode::m_fnMeasureDescent() {
    m_fnDrawCharMain(u'A');
    m_uDescent = m_uFontSize / 8; // KEEP(profiles): whatever was drawn
}

void CFontUniCode::m_fnCalibrate() {
    // KEEP(files): glyphs are drawn with m_hFont all the same; what is found here only goes to cache files.
    constexpr u32 uBlock = 9608, uRounds = 5;
    const f32 fNominal = static_cast<f32>(m_uFontSize);
    m_uCalibSize = m_uFontSize;
    m_fCalibRatio = 1.0f;
    u32 uSize = m_uFontSize;
    for (u32 n = 0; n < uRounds; ++n) {
        m_fnCreateGdiFont(&m_hFontCalib, uSize, nullptr);
        m_fnDrawChar(uBlock, m_hFontCalib ? m_hFontCalib : m_hFont);
        i32 aiBox[4] = {};
        m_fnInkBox(&aiBox[0], &aiBox[1], &aiBox[2], &aiBox[3]);
        std::memcpy(m_uBlockBox, aiBox, sizeof aiBox);
        const f32 fRatio = static_cast<f32>(aiBox[3]) / fNominal;
        if (static_cast<f32>(aiBox[2]) / fNominal <= 1.0f && fRatio <= 1.0f) break;
        uSize = static_cast<u32>(g_fnTruncate<i32>(static_cast<f32>(uSize) / fRatio));
        if (n == 0) m_fCalibRatio = fRatio;
        FreeFont(m_hFontCalib);
    }
}
