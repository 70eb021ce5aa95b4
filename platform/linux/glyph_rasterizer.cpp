// Glyphs by FreeType, in two levels, hinted as for classic black and white screens: boxes and advances come
// out as GDI has them.
#include "platform/glyph_rasterizer.h"

#include "platform/linux/font_catalogue.h"
#include "platform/linux/font_output.h"
#include "platform/pages.h"
#include "platform/utf.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <map>
#include <mutex>
#include <new>

namespace platform {

/// What all fonts share. It lives as long as one of them.
struct stFontSystem {
    stFontSystem() = default;
    ~stFontSystem() {
        if (m_hLibrary) FT_Done_FreeType(m_hLibrary);
    }
    stFontSystem(const stFontSystem&) = delete;
    stFontSystem& operator=(const stFontSystem&) = delete;

    FT_Library m_hLibrary = nullptr;
    std::shared_ptr<CFontCatalogue> m_pCatalogue;
};

struct GlyphBitmap {
    i32 m_iWidth, m_iHeight;
    u8* m_pPixels;                    ///< 0 or 255, rows packed
    i32 m_iInkTop = 0, m_iInkEnd = 0; ///< rows that were drawn into; the ends are not among them
    i32 m_iInkLeft = 0, m_iInkRight = 0;
};

struct GlyphDevice {
    GlyphBitmap* m_pBitmap;
};

struct GlyphFont {
    std::shared_ptr<stFontSystem> m_pSystem;
    CFaceList* m_pList = nullptr;
    i32 m_iEmHeight = 0, m_iWeight = 0;
    char m_szFamily[256] = "";
    bool m_bTried = false; ///< to be opened, whether or not it was
    FT_Face m_hMain = nullptr;
    std::map<u32, FT_Face> m_mapOthers; ///< by place in the list; null: cannot be used
    FT_Face m_hLastFace = nullptr; ///< of the glyph drawn last, which is often asked for its advance next
    FT_UInt m_uLastIndex = 0;
    i32 m_iLastAdvance = 0;
};

/// Held wherever the system or its library's faces are made or given back.
static std::mutex g_mutexSystem;
/// Pixels of the em that are still rasterised; far above any cell.
static constexpr i32 g_iMostEm = 16384;

GlyphDevice* CreateGlyphDevice() noexcept { return new (std::nothrow) GlyphDevice{}; }

void DestroyGlyphDevice(GlyphDevice* pDevice) noexcept { delete pDevice; }

void GlyphDeviceDpi(GlyphDevice*, i32* piX, i32* piY) noexcept { *piX = *piY = 96; }

static u64 PixelsOf(const GlyphBitmap& st) {
    return static_cast<u64>(st.m_iWidth) * static_cast<u64>(st.m_iHeight);
}

GlyphBitmap* CreateGlyphBitmap(GlyphDevice* pDevice, i32 iWidth, i32 iHeight) noexcept {
    if (!pDevice || iWidth < 1 || iHeight < 1) return nullptr;
    const u64 uPixels = PixelsOf({iWidth, iHeight, nullptr});
    auto* const pBitmap = new (std::nothrow) GlyphBitmap{iWidth, iHeight, AllocatePages(uPixels)};
    if (!pBitmap || !pBitmap->m_pPixels) {
        delete pBitmap;
        return nullptr;
    }
    pDevice->m_pBitmap = pBitmap;
    return pBitmap;
}

void DestroyGlyphBitmap(GlyphBitmap* pBitmap) noexcept {
    if (!pBitmap) return;
    FreePages(pBitmap->m_pPixels, PixelsOf(*pBitmap));
    delete pBitmap;
}

void ClearGlyphBitmap(GlyphDevice* pDevice) noexcept {
    if (!pDevice || !pDevice->m_pBitmap) return;
    GlyphBitmap& st = *pDevice->m_pBitmap;
    if (st.m_iInkTop >= st.m_iInkEnd) return;
    std::fill_n(st.m_pPixels + static_cast<i64>(st.m_iInkTop) * st.m_iWidth,
                static_cast<i64>(st.m_iInkEnd - st.m_iInkTop) * st.m_iWidth, u8{0});
    st.m_iInkTop = st.m_iInkEnd = st.m_iInkLeft = st.m_iInkRight = 0;
}

void RestGlyphDevice(GlyphDevice* pDevice) noexcept {
    ClearGlyphBitmap(pDevice);
    if (pDevice && pDevice->m_pBitmap)
        ForgetPages(pDevice->m_pBitmap->m_pPixels, PixelsOf(*pDevice->m_pBitmap));
}

stGlyphRows ReadGlyphBitmap(GlyphDevice* pDevice, i32 iWidth, i32 iHeight, u8* pRows) noexcept {
    if (!pDevice || !pDevice->m_pBitmap) return {0, 0};
    const GlyphBitmap& st = *pDevice->m_pBitmap;
    const i64 iPitch = (static_cast<i64>(iWidth) * 3 + 3) / 4 * 4;
    const i32 iPixels = std::min(iWidth, st.m_iWidth), iRight = std::min(iPixels, st.m_iInkRight);
    const stGlyphRows stRows{st.m_iInkTop, std::max(st.m_iInkTop, std::min(st.m_iInkEnd, iHeight))};
    for (i32 y = stRows.m_iTop; y < stRows.m_iEnd; ++y) {
        u8* const pRow = pRows + y * iPitch;
        const u8* const pFrom = st.m_pPixels + static_cast<i64>(y) * st.m_iWidth;
        std::fill_n(pRow, iPixels * 3, u8{0});
        for (i32 x = st.m_iInkLeft; x < iRight; ++x)
            pRow[x * 3] = pRow[x * 3 + 1] = pRow[x * 3 + 2] = pFrom[x];
    }
    return stRows;
}

/// A face at the font's size; null if its file cannot be opened or has no outlines.
static FT_Face OpenFace(const GlyphFont& font, const stFaceFile& stFile) {
    FT_Face hFace = nullptr;
    if (stFile.m_path.empty() ||
        FT_New_Face(font.m_pSystem->m_hLibrary, stFile.m_path.c_str(), stFile.m_iIndex, &hFace))
        return nullptr;
    if (FT_IS_SCALABLE(hFace) && !FT_Set_Pixel_Sizes(hFace, 0, static_cast<FT_UInt>(font.m_iEmHeight)))
        return hFace;
    FT_Done_Face(hFace);
    return nullptr;
}

/// Never destroyed: the host may still draw while the process ends.
struct stKeptSystem {
    std::weak_ptr<stFontSystem> pCurrent;
    std::shared_ptr<stFontSystem> pHeld;
};
static stKeptSystem& Kept() {
    static auto* const pKept = new stKeptSystem;
    return *pKept;
}

/// The one in use, or a new one; null without memory or a font configuration.
static std::shared_ptr<stFontSystem> OpenSystem() {
    auto* const pCurrent = &Kept().pCurrent;
    if (auto pOpen = pCurrent->lock()) return pOpen;
    if (!OpenFontOutput()) return nullptr;
    auto pNew = std::make_shared<stFontSystem>();
    pNew->m_pCatalogue = CFontCatalogue::Open();
    if (!pNew->m_pCatalogue || FT_Init_FreeType(&pNew->m_hLibrary)) return nullptr;
    *pCurrent = pNew;
    return pNew;
}

bool HoldGlyphSystem() noexcept {
    try {
        const std::lock_guard lock(g_mutexSystem);
        const bool bOpen = !Kept().pCurrent.expired();
        Kept().pHeld = OpenSystem();
        return !bOpen && Kept().pHeld;
    } catch (...) { // out of memory
        return false;
    }
}

void LetGlyphSystemGo() noexcept {
    const std::lock_guard lock(g_mutexSystem);
    Kept().pHeld.reset();
}

static bool TakeRequest(GlyphFont& font, const stGlyphFontRequest& stRequest) {
    font.m_iEmHeight = std::clamp(stRequest.m_iEmHeight, 1, g_iMostEm);
    font.m_iWeight = stRequest.m_iWeight == 0 ? 400 : std::clamp(stRequest.m_iWeight, 1, 1000);
    return !stRequest.m_wzFace || Utf16ToUtf8(stRequest.m_wzFace, font.m_szFamily, sizeof font.m_szFamily);
}

/// True if the font has its face, which is looked for once.
static bool OpenFont(GlyphFont& font) noexcept {
    if (font.m_bTried) return font.m_hMain != nullptr;
    font.m_bTried = true;
    try {
        const std::lock_guard lock(g_mutexSystem);
        font.m_pSystem = OpenSystem();
        if (!font.m_pSystem) return false;
        font.m_pList = &font.m_pSystem->m_pCatalogue->Find(font.m_szFamily, font.m_iWeight);
        font.m_hMain = OpenFace(font, font.m_pList->Main());
    } catch (...) { // out of memory
    }
    return font.m_hMain != nullptr;
}

static void CloseFaces(GlyphFont& font) {
    for (const auto& [uPlace, hFace] : font.m_mapOthers)
        if (hFace) FT_Done_Face(hFace);
    font.m_mapOthers.clear();
    if (font.m_hMain) FT_Done_Face(font.m_hMain);
    font.m_hMain = font.m_hLastFace = nullptr;
}

static void CloseFont(GlyphFont& font) {
    CloseFaces(font);
    font.m_pSystem.reset();
}

// The list of files stays, which took long to make; a face alone is opened fast.
void RestGlyphFont(GlyphFont* pFont) noexcept {
    if (!pFont || !pFont->m_hMain) return;
    const std::lock_guard lock(g_mutexSystem);
    CloseFaces(*pFont);
    pFont->m_bTried = false;
}

GlyphFont* CreateGlyphFont(GlyphDevice*, const stGlyphFontRequest& stRequest) noexcept {
    auto* const pFont = new (std::nothrow) GlyphFont;
    if (!pFont) return nullptr;
    if (TakeRequest(*pFont, stRequest) && (stRequest.m_bAtFirstUse || OpenFont(*pFont))) return pFont;
    DestroyGlyphFont(pFont);
    return nullptr;
}

void DestroyGlyphFont(GlyphFont* pFont) noexcept {
    if (!pFont) return;
    {
        const std::lock_guard lock(g_mutexSystem);
        CloseFont(*pFont);
    }
    delete pFont;
}

/// The face at a place of the list, opened at its first use.
static FT_Face OtherFace(GlyphFont& font, u32 uPlace) {
    const auto [it, bNew] = font.m_mapOthers.try_emplace(uPlace, nullptr);
    if (bNew) {
        const std::lock_guard lock(g_mutexSystem);
        it->second = OpenFace(font, font.m_pList->Others()[uPlace]);
    }
    return it->second;
}

/// Sorting all faces of the system takes long, and most texts never need another one.
static const std::vector<stFaceFile>& OtherFaces(GlyphFont& font) {
    const std::lock_guard lock(g_mutexSystem);
    return font.m_pList->Others();
}

struct stGlyph {
    FT_Face m_hFace;
    FT_UInt m_uIndex; ///< 0: the box for a missing glyph
};

/// The main face's glyph, or that of the first other face that has one, or the main face's box.
static stGlyph FindGlyph(GlyphFont& font, u32 uCode) {
    if (const FT_UInt u = FT_Get_Char_Index(font.m_hMain, uCode)) return {font.m_hMain, u};
    const std::vector<stFaceFile>& aOthers = OtherFaces(font);
    for (u32 i = 0; i < aOthers.size(); ++i) {
        if (!CFaceList::Covers(aOthers[i], uCode)) continue;
        const FT_Face hFace = OtherFace(font, i);
        const FT_UInt u = hFace ? FT_Get_Char_Index(hFace, uCode) : 0;
        if (u) return {hFace, u};
    }
    return {font.m_hMain, 0};
}

/// Takes one code point off a text of uUnits units; a surrogate without its partner counts as a code.
static u32 NextCode(const char16_t*& wz, u32& uUnits) {
    const u32 c = *wz++;
    --uUnits;
    if (c < 0xD800 || c >= 0xDC00 || uUnits == 0 || *wz < 0xDC00 || *wz >= 0xE000) return c;
    --uUnits;
    return 0x10000 + ((c - 0xD800) << 10) + (*wz++ - 0xDC00u);
}

/// Where a bitmap has been drawn into, with a box that is not empty.
static void AddInk(GlyphBitmap& st, i32 iLeft, i32 iTop, i32 iRight, i32 iEnd) {
    const bool bFirst = st.m_iInkTop >= st.m_iInkEnd;
    st.m_iInkLeft = bFirst ? iLeft : std::min(st.m_iInkLeft, iLeft);
    st.m_iInkTop = bFirst ? iTop : std::min(st.m_iInkTop, iTop);
    st.m_iInkRight = std::max(st.m_iInkRight, iRight);
    st.m_iInkEnd = std::max(st.m_iInkEnd, iEnd);
}

/// Blends a two-level glyph in, clipped at the bitmap.
static void Blit(GlyphBitmap& to, const FT_Bitmap& from, i32 iLeft, i32 iTop) {
    if (from.pixel_mode != FT_PIXEL_MODE_MONO || from.pitch < 0) return;
    const i32 iWidth = static_cast<i32>(from.width), iHeight = static_cast<i32>(from.rows);
    const i32 iEndX = std::min(iWidth, to.m_iWidth - iLeft), iEndY = std::min(iHeight, to.m_iHeight - iTop);
    const i32 iFirstX = std::max(0, -iLeft), iFirstY = std::max(0, -iTop);
    if (iFirstY >= iEndY || iFirstX >= iEndX) return;
    AddInk(to, iLeft + iFirstX, iTop + iFirstY, iLeft + iEndX, iTop + iEndY);
    for (i32 y = iFirstY; y < iEndY; ++y) {
        const u8* const pRow = from.buffer + static_cast<i64>(y) * from.pitch;
        u8* const pTo = to.m_pPixels + static_cast<i64>(iTop + y) * to.m_iWidth + iLeft;
        for (i32 x = iFirstX; x < iEndX; ++x) {
            if (pRow[x >> 3] == 0)
                x |= 7; // most of a row is blank
            else if (pRow[x >> 3] >> (7 - (x & 7)) & 1)
                pTo[x] = 255;
        }
    }
}

/// Goes through a text glyph by glyph, drawing where there is a bitmap. Gives the pen's end.
static i32 Walk(GlyphFont& font, const char16_t* wzText, u32 uUnits, GlyphBitmap* pBitmap, i32 iBaseline) {
    i32 iPen = 0;
    while (uUnits) {
        const stGlyph st = FindGlyph(font, NextCode(wzText, uUnits));
        if (!pBitmap && st.m_hFace == font.m_hLastFace && st.m_uIndex == font.m_uLastIndex) {
            iPen += font.m_iLastAdvance;
            continue;
        }
        if (FT_Load_Glyph(st.m_hFace, st.m_uIndex, FT_LOAD_TARGET_MONO | FT_LOAD_NO_BITMAP)) continue;
        const FT_GlyphSlot pSlot = st.m_hFace->glyph;
        const i32 iAdvance = static_cast<i32>((pSlot->advance.x + 32) >> 6);
        if (pBitmap && !FT_Render_Glyph(pSlot, FT_RENDER_MODE_MONO))
            Blit(*pBitmap, pSlot->bitmap, iPen + pSlot->bitmap_left, iBaseline - pSlot->bitmap_top);
        iPen += iAdvance;
        font.m_hLastFace = st.m_hFace;
        font.m_uLastIndex = st.m_uIndex;
        font.m_iLastAdvance = iAdvance;
    }
    return iPen;
}

/// As Walk; nothing and 0 when memory runs out.
static i32 WalkSafely(GlyphFont* pFont, const char16_t* wzText, u32 uUnits, GlyphBitmap* pBitmap,
                      i32 iBaseline) {
    try {
        return pFont && OpenFont(*pFont) ? Walk(*pFont, wzText, uUnits, pBitmap, iBaseline) : 0;
    } catch (...) {
        return 0;
    }
}

void DrawGlyphs(GlyphDevice* pDevice, GlyphFont* pFont, const char16_t* wzText, u32 uUnits,
                i32 iBaseline) noexcept {
    if (pDevice && pDevice->m_pBitmap) WalkSafely(pFont, wzText, uUnits, pDevice->m_pBitmap, iBaseline);
}

i32 GlyphExtent(GlyphDevice*, GlyphFont* pFont, const char16_t* wzText, u32 uUnits) noexcept {
    return WalkSafely(pFont, wzText, uUnits, nullptr, 0);
}

bool GlyphFontFamily(GlyphDevice*, GlyphFont* pFont, char16_t* wzOut, u32 uCapacity) noexcept {
    if (uCapacity) wzOut[0] = 0;
    const char* const szFamily = pFont && OpenFont(*pFont) ? pFont->m_hMain->family_name : nullptr;
    if (Utf8ToUtf16(szFamily, wzOut, uCapacity)) return true;
    if (uCapacity) wzOut[0] = 0;
    return false;
}

bool FontHasGlyph(GlyphDevice*, GlyphFont* pFont, const char16_t* wzText, u32 uUnits) noexcept {
    return pFont && uUnits && OpenFont(*pFont) &&
           FT_Get_Char_Index(pFont->m_hMain, NextCode(wzText, uUnits)) != 0;
}

bool FontCoversCode(GlyphDevice*, GlyphFont* pFont, u32 uCode) noexcept {
    return pFont && OpenFont(*pFont) && FT_Get_Char_Index(pFont->m_hMain, uCode) != 0;
}

} // namespace platform
