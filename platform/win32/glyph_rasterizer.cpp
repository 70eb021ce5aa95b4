// Glyphs by GDI. The bitmap is compatible with the memory device itself, which has one bit a pixel, so that
// glyphs come out in two levels.
#include "platform/glyph_rasterizer.h"

#include "platform/win32/windows_api.h"

#include <cstdlib>
#include <new>

static_assert(sizeof(wchar_t) == sizeof(char16_t), "texts are handed on as they are");

namespace platform {

struct GlyphBitmap {
    HBITMAP m_hBitmap;
    i32 m_iWidth, m_iHeight;
};

struct GlyphDevice {
    HDC m_hDC;
    HGDIOBJ m_hOwnBitmap;   ///< what the device came with
    GlyphBitmap* m_pBitmap; ///< selected, null: none
};

struct GlyphFont {
    HFONT m_hFont;
};

/// Selects a font for the time of a call, so that fonts are never deleted while selected. Null leaves the one
/// that the device came with.
class CSelectedFont {
  public:
    CSelectedFont(GlyphDevice* pDevice, GlyphFont* pFont)
        : m_hDC(pDevice->m_hDC), m_hFormer(pFont ? SelectObject(m_hDC, pFont->m_hFont) : nullptr) {}
    ~CSelectedFont() {
        if (m_hFormer) SelectObject(m_hDC, m_hFormer);
    }
    CSelectedFont(const CSelectedFont&) = delete;
    CSelectedFont& operator=(const CSelectedFont&) = delete;

  private:
    HDC m_hDC;
    HGDIOBJ m_hFormer;
};

static const wchar_t* Wide(const char16_t* wz) { return reinterpret_cast<const wchar_t*>(wz); }

// The system has its fonts open for all programs.
bool HoldGlyphSystem() noexcept { return false; }
void LetGlyphSystemGo() noexcept {}

// What GDI keeps is the system's business.
void RestGlyphDevice(GlyphDevice* pDevice) noexcept { ClearGlyphBitmap(pDevice); }
void RestGlyphFont(GlyphFont*) noexcept {}

GlyphDevice* CreateGlyphDevice() noexcept {
    auto* const pDevice = new (std::nothrow) GlyphDevice{};
    if (!pDevice) return nullptr;
    const HDC hScreen = GetDC(nullptr);
    pDevice->m_hDC = CreateCompatibleDC(hScreen);
    if (hScreen) ReleaseDC(nullptr, hScreen);
    if (!pDevice->m_hDC) {
        delete pDevice;
        return nullptr;
    }
    SetMapMode(pDevice->m_hDC, MM_TEXT);
    return pDevice;
}

void DestroyGlyphDevice(GlyphDevice* pDevice) noexcept {
    if (!pDevice) return;
    DeleteDC(pDevice->m_hDC);
    delete pDevice;
}

void GlyphDeviceDpi(GlyphDevice* pDevice, i32* piX, i32* piY) noexcept {
    *piX = pDevice ? GetDeviceCaps(pDevice->m_hDC, LOGPIXELSX) : 96;
    *piY = pDevice ? GetDeviceCaps(pDevice->m_hDC, LOGPIXELSY) : 96;
}

GlyphBitmap* CreateGlyphBitmap(GlyphDevice* pDevice, i32 iWidth, i32 iHeight) noexcept {
    if (!pDevice || iWidth < 1 || iHeight < 1) return nullptr;
    auto* const pBitmap = new (std::nothrow) GlyphBitmap{nullptr, iWidth, iHeight};
    if (!pBitmap) return nullptr;
    pBitmap->m_hBitmap = CreateCompatibleBitmap(pDevice->m_hDC, iWidth, iHeight);
    if (!pBitmap->m_hBitmap) {
        delete pBitmap;
        return nullptr;
    }
    const HGDIOBJ hFormer = SelectObject(pDevice->m_hDC, pBitmap->m_hBitmap);
    if (!pDevice->m_hOwnBitmap) pDevice->m_hOwnBitmap = hFormer;
    pDevice->m_pBitmap = pBitmap;
    SetBkColor(pDevice->m_hDC, 0);
    SetBkMode(pDevice->m_hDC, TRANSPARENT);
    ClearGlyphBitmap(pDevice);
    return pBitmap;
}

void DestroyGlyphBitmap(GlyphBitmap* pBitmap) noexcept {
    if (!pBitmap) return;
    DeleteObject(pBitmap->m_hBitmap);
    delete pBitmap;
}

void ClearGlyphBitmap(GlyphDevice* pDevice) noexcept {
    if (!pDevice || !pDevice->m_pBitmap) return;
    const RECT stAll = {0, 0, pDevice->m_pBitmap->m_iWidth, pDevice->m_pBitmap->m_iHeight};
    FillRect(pDevice->m_hDC, &stAll, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

stGlyphRows ReadGlyphBitmap(GlyphDevice* pDevice, i32 iWidth, i32 iHeight, u8* pRows) noexcept {
    if (!pDevice || !pDevice->m_pBitmap) return {0, 0};
    BITMAPINFO stInfo = {};
    stInfo.bmiHeader.biSize = sizeof stInfo.bmiHeader;
    stInfo.bmiHeader.biWidth = iWidth;
    stInfo.bmiHeader.biHeight = -iHeight; // from the top down
    stInfo.bmiHeader.biPlanes = 1;
    stInfo.bmiHeader.biBitCount = 24;
    stInfo.bmiHeader.biCompression = BI_RGB;
    // GDI asks for a bitmap that is not selected.
    SelectObject(pDevice->m_hDC, pDevice->m_hOwnBitmap);
    GetDIBits(pDevice->m_hDC, pDevice->m_pBitmap->m_hBitmap, 0, static_cast<UINT>(iHeight), pRows, &stInfo,
              DIB_RGB_COLORS);
    SelectObject(pDevice->m_hDC, pDevice->m_pBitmap->m_hBitmap);
    return {0, iHeight};
}

/// What a nominal size gives, to be taken over but for the fields of the request.
static HFONT CreateNominalFont(const stGlyphFontRequest& stRequest) {
    return CreateFontW(static_cast<int>(stRequest.m_uSize), 0, 0, 0, stRequest.m_iWeight, 0, 0, 0,
                       DEFAULT_CHARSET, OUT_RASTER_PRECIS, 0, CLEARTYPE_QUALITY, FIXED_PITCH,
                       Wide(stRequest.m_wzFace));
}

GlyphFont* CreateGlyphFont(GlyphDevice* pDevice, const stGlyphFontRequest& stRequest) noexcept {
    if (!pDevice) return nullptr;
    GlyphFont stNominal{CreateNominalFont(stRequest)};
    if (!stNominal.m_hFont) return nullptr;
    // KEEP(profiles): the face name goes through the ANSI code page here; letters beyond it are lost.
    LOGFONTA stFont = {};
    GetObjectA(stNominal.m_hFont, sizeof stFont, &stFont);
    stFont.lfWeight = stRequest.m_iWeight;
    stFont.lfCharSet = DEFAULT_CHARSET;
    stFont.lfOutPrecision = OUT_RASTER_PRECIS;
    stFont.lfQuality = CLEARTYPE_QUALITY;
    stFont.lfPitchAndFamily = FIXED_PITCH;
    stFont.lfHeight = -stRequest.m_iEmHeight;
    stFont.lfWidth = 0;
    {
        const CSelectedFont selected(pDevice, &stNominal);
        TEXTMETRICA stMetrics;
        GetTextMetricsA(pDevice->m_hDC, &stMetrics);
    }
    DeleteObject(stNominal.m_hFont);
    auto* const pFont = new (std::nothrow) GlyphFont{CreateFontIndirectA(&stFont)};
    if (pFont && pFont->m_hFont) return pFont;
    DestroyGlyphFont(pFont);
    return nullptr;
}

void DestroyGlyphFont(GlyphFont* pFont) noexcept {
    if (!pFont) return;
    if (pFont->m_hFont) DeleteObject(pFont->m_hFont);
    delete pFont;
}

void DrawGlyphs(GlyphDevice* pDevice, GlyphFont* pFont, const char16_t* wzText, u32 uUnits,
                i32 iBaseline) noexcept {
    if (!pDevice || uUnits == 0) return;
    SetTextColor(pDevice->m_hDC, 0xFFFFFF);
    const CSelectedFont selected(pDevice, pFont);
    SetTextAlign(pDevice->m_hDC, TA_BASELINE);
    TextOutW(pDevice->m_hDC, 0, iBaseline, Wide(wzText), static_cast<int>(uUnits));
}

i32 GlyphExtent(GlyphDevice* pDevice, GlyphFont* pFont, const char16_t* wzText, u32 uUnits) noexcept {
    if (!pDevice || uUnits == 0) return 0;
    const CSelectedFont selected(pDevice, pFont);
    SIZE stSize = {};
    GetTextExtentPoint32W(pDevice->m_hDC, Wide(wzText), static_cast<int>(uUnits), &stSize);
    return stSize.cx;
}

bool GlyphFontFamily(GlyphDevice* pDevice, GlyphFont* pFont, char16_t* wzOut, u32 uCapacity) noexcept {
    if (uCapacity) wzOut[0] = 0;
    if (!pDevice || !pFont || uCapacity == 0) return false;
    const CSelectedFont selected(pDevice, pFont);
    const int iNeeded = GetTextFaceW(pDevice->m_hDC, 0, nullptr);
    if (iNeeded < 2 || static_cast<u32>(iNeeded) > uCapacity) return false;
    return GetTextFaceW(pDevice->m_hDC, iNeeded, reinterpret_cast<wchar_t*>(wzOut)) > 1;
}

bool FontHasGlyph(GlyphDevice* pDevice, GlyphFont* pFont, const char16_t* wzText, u32 uUnits) noexcept {
    if (!pDevice || uUnits == 0 || uUnits > 2) return false;
    const CSelectedFont selected(pDevice, pFont);
    WORD auIndex[2] = {0xFFFF, 0xFFFF};
    GetGlyphIndicesW(pDevice->m_hDC, Wide(wzText), static_cast<int>(uUnits), auIndex,
                     GGI_MARK_NONEXISTING_GLYPHS);
    return auIndex[0] < 0xFFFF;
}

bool FontCoversCode(GlyphDevice* pDevice, GlyphFont* pFont, u32 uCode) noexcept {
    if (!pDevice || uCode > 0xFFFF) return false; // ranges are of 16-bit codes
    const CSelectedFont selected(pDevice, pFont);
    const DWORD uBytes = GetFontUnicodeRanges(pDevice->m_hDC, nullptr);
    auto* const pRanges = uBytes ? static_cast<GLYPHSET*>(std::calloc(1, uBytes)) : nullptr;
    if (!pRanges) return false;
    bool bCovered = false;
    if (GetFontUnicodeRanges(pDevice->m_hDC, pRanges))
        for (DWORD i = 0; i < pRanges->cRanges && !bCovered; ++i) {
            const WCRANGE& stRange = pRanges->ranges[i];
            bCovered = uCode >= stRange.wcLow && uCode - stRange.wcLow < stRange.cGlyphs;
        }
    std::free(pRanges);
    return bCovered;
}

} // namespace platform
