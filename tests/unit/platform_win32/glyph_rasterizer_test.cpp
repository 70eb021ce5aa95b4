// The rasteriser over GDI.
#include "platform/glyph_rasterizer.h"

#include "platform/win32/windows_api.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace platform;

/// A bitmap of 128 by 100 with the baseline at row 72, and fonts for it.
class Glyphs : public ::testing::Test {
  protected:
    void SetUp() override {
        m_pDevice = CreateGlyphDevice();
        m_pBitmap = CreateGlyphBitmap(m_pDevice, 128, 100);
        ASSERT_NE(m_pBitmap, nullptr);
    }
    void TearDown() override {
        DestroyGlyphDevice(m_pDevice);
        DestroyGlyphBitmap(m_pBitmap);
        for (GlyphFont* const p : m_aFonts) DestroyGlyphFont(p);
    }
    GlyphFont* Font(const char16_t* wzFace, i32 iEm = 43, i32 iWeight = 400) {
        m_aFonts.push_back(CreateGlyphFont(m_pDevice, {32, iEm, iWeight, wzFace}));
        return m_aFonts.back();
    }
    i32 Extent(GlyphFont* pFont, const std::u16string& text) {
        return GlyphExtent(m_pDevice, pFont, text.c_str(), static_cast<u32>(text.size()));
    }
    bool Has(GlyphFont* pFont, const std::u16string& text) {
        return FontHasGlyph(m_pDevice, pFont, text.c_str(), static_cast<u32>(text.size()));
    }
    /// One byte a pixel of the cleared bitmap with a text drawn into it.
    std::vector<u8> Picture(GlyphFont* pFont, const std::u16string& text, i32 iBaseline = 72) {
        ClearGlyphBitmap(m_pDevice);
        DrawGlyphs(m_pDevice, pFont, text.c_str(), static_cast<u32>(text.size()), iBaseline);
        std::vector<u8> rows(128 * 3 * 100), pixels;
        ReadGlyphBitmap(m_pDevice, 128, 100, rows.data());
        for (u32 i = 0; i < rows.size(); i += 3) pixels.push_back(rows[i]);
        return pixels;
    }
    static i64 Ink(const std::vector<u8>& pixels) { return std::count(pixels.begin(), pixels.end(), 255); }

    GlyphDevice* m_pDevice = nullptr;
    GlyphBitmap* m_pBitmap = nullptr;
    std::vector<GlyphFont*> m_aFonts;
};

TEST_F(Glyphs, AFontTellsTheFamilyThatItDrawsWith) {
    char16_t wzFamily[64] = u"x";
    ASSERT_TRUE(GlyphFontFamily(m_pDevice, Font(u"DejaVu Sans"), wzFamily, 64));
    EXPECT_EQ(std::u16string(wzFamily), u"DejaVu Sans");
    ASSERT_TRUE(GlyphFontFamily(m_pDevice, Font(u"No Such Face At All"), wzFamily, 64));
    EXPECT_NE(std::u16string(wzFamily), u"No Such Face At All") << "the nearest one";
    EXPECT_FALSE(GlyphFontFamily(m_pDevice, m_aFonts[0], wzFamily, 4)) << "it does not fit";
    EXPECT_EQ(wzFamily[0], 0);
    EXPECT_FALSE(GlyphFontFamily(m_pDevice, nullptr, wzFamily, 64));
}

TEST_F(Glyphs, PixelsAreBlackOrWhite) {
    const auto pixels = Picture(Font(u"DejaVu Sans"), u"Aas");
    EXPECT_GT(Ink(pixels), 200);
    EXPECT_EQ(Ink(pixels) + std::count(pixels.begin(), pixels.end(), 0), 128 * 100);
}

TEST_F(Glyphs, UnknownNamesGiveAFaceOfFixedPitch) {
    GlyphFont* const pFont = Font(u"No Such Face At All");
    ASSERT_NE(pFont, nullptr);
    EXPECT_EQ(Extent(pFont, u"i"), Extent(pFont, u"W"));
    EXPECT_EQ(Picture(Font(nullptr), u"iW"), Picture(pFont, u"iW"));
}

/// DejaVu Sans under a name of as many Cyrillic letters, private to the process.
class CRenamedFace {
  public:
    CRenamedFace() {
        const HDC hDC = CreateCompatibleDC(nullptr);
        const HFONT hFont = CreateNamed(L"DejaVu Sans");
        const HGDIOBJ hFormer = SelectObject(hDC, hFont);
        std::vector<u8> file(GetFontData(hDC, 0, 0, nullptr, 0));
        GetFontData(hDC, 0, 0, file.data(), static_cast<DWORD>(file.size()));
        SelectObject(hDC, hFormer);
        DeleteObject(hFont);
        DeleteDC(hDC);
        const auto from = BigEndian(u"DejaVu Sans"), to = BigEndian(s_wzName);
        for (auto it = file.begin();
             (it = std::search(it, file.end(), from.begin(), from.end())) != file.end();)
            it = std::copy(to.begin(), to.end(), it);
        DWORD uFaces = 0;
        m_hResource = AddFontMemResourceEx(file.data(), static_cast<DWORD>(file.size()), nullptr, &uFaces);
    }
    ~CRenamedFace() { RemoveFontMemResourceEx(m_hResource); }
    CRenamedFace(const CRenamedFace&) = delete;
    CRenamedFace& operator=(const CRenamedFace&) = delete;

    static HFONT CreateNamed(const wchar_t* wzName) {
        return CreateFontW(-43, 0, 0, 0, 400, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, FIXED_PITCH, wzName);
    }
    static constexpr const char16_t* s_wzName =
        u"\u0414\u0435\u0436\u0430\u0412\u0443 \u0421\u0430\u043D\u0441";

  private:
    static std::vector<u8> BigEndian(const std::u16string& text) {
        std::vector<u8> bytes;
        for (const char16_t wc : text)
            bytes.insert(bytes.end(), {static_cast<u8>(wc >> 8), static_cast<u8>(wc & 0xFF)});
        return bytes;
    }
    HANDLE m_hResource = nullptr;
};

/// Whether GDI itself gives a face of varying widths for a wide name.
bool GdiGivesProportional(const char16_t* wzName) {
    const HDC hDC = CreateCompatibleDC(nullptr);
    const HFONT hFont = CRenamedFace::CreateNamed(reinterpret_cast<const wchar_t*>(wzName));
    const HGDIOBJ hFormer = SelectObject(hDC, hFont);
    SIZE stNarrow = {}, stWide = {};
    GetTextExtentPoint32W(hDC, L"i", 1, &stNarrow);
    GetTextExtentPoint32W(hDC, L"W", 1, &stWide);
    SelectObject(hDC, hFormer);
    DeleteObject(hFont);
    DeleteDC(hDC);
    return stNarrow.cx != stWide.cx;
}

TEST_F(Glyphs, NamesGoThroughTheAnsiCodePage) {
    const CRenamedFace face;
    ASSERT_TRUE(GdiGivesProportional(face.s_wzName)) << "it is there";
    GlyphFont* const pFont = Font(face.s_wzName);
    EXPECT_EQ(Extent(pFont, u"i"), Extent(pFont, u"W")) << "its letters are lost, the default face comes";
}

TEST_F(Glyphs, MissingGlyphsAreToldFromOthers) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    EXPECT_TRUE(Has(pFont, u"A"));
    EXPECT_TRUE(Has(pFont, u"\u0416"));
    EXPECT_FALSE(Has(pFont, u"\uE123"));
    EXPECT_FALSE(Has(pFont, u""));
    EXPECT_TRUE(FontCoversCode(m_pDevice, pFont, 'A'));
    EXPECT_FALSE(FontCoversCode(m_pDevice, pFont, 0x4E2D));
    EXPECT_FALSE(FontCoversCode(m_pDevice, pFont, 0x1D538)) << "ranges are of 16-bit codes";
    EXPECT_FALSE(FontCoversCode(m_pDevice, pFont, 0x10041)) << "and no A behind them";
}

TEST_F(Glyphs, DrawingIsClippedAndGoesOverWhatIsThere) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    const auto iBoth = Ink(Picture(pFont, u"_")) + Ink(Picture(pFont, u"'"));
    Picture(pFont, u"_");
    DrawGlyphs(m_pDevice, pFont, u"'", 1, 72);
    std::vector<u8> rows(128 * 3 * 100);
    ReadGlyphBitmap(m_pDevice, 128, 100, rows.data());
    EXPECT_EQ(std::count(rows.begin(), rows.end(), 255), iBoth * 3);
    for (const i32 iBaseline : {-300, -10, 0, 20, 99, 100, 150, 5000})
        EXPECT_LT(Ink(Picture(Font(u"DejaVu Sans", 200), u"jMMMM", iBaseline)), 128 * 100) << iBaseline;
}

TEST_F(Glyphs, RowsArePaddedToFourBytes) {
    GlyphDevice* const pDevice = CreateGlyphDevice();
    GlyphBitmap* const pBitmap = CreateGlyphBitmap(pDevice, 10, 2);
    DrawGlyphs(pDevice, Font(u"DejaVu Sans", 40), u"\u2588", 1, 20);
    std::vector<u8> rows(64 + 1, 7);
    ReadGlyphBitmap(pDevice, 10, 2, rows.data());
    EXPECT_EQ(rows[29], 255);
    EXPECT_EQ(rows[32], 255) << "the next row";
    EXPECT_EQ(rows[64], 7);
    DestroyGlyphDevice(pDevice);
    DestroyGlyphBitmap(pBitmap);
}

TEST_F(Glyphs, WeightPicksTheFace) {
    const auto regular = Picture(Font(u"DejaVu Sans", 43, 400), u"H");
    EXPECT_GT(Ink(Picture(Font(u"DejaVu Sans", 43, 700), u"H")), Ink(regular) * 5 / 4);
}

TEST_F(Glyphs, NullHandlesDoNothing) {
    i32 iX = 0, iY = 0;
    GlyphDeviceDpi(nullptr, &iX, &iY);
    EXPECT_EQ(iX, 96);
    EXPECT_EQ(iY, 96);
    EXPECT_EQ(CreateGlyphBitmap(nullptr, 4, 4), nullptr);
    EXPECT_EQ(CreateGlyphBitmap(m_pDevice, 0, 4), nullptr);
    EXPECT_EQ(CreateGlyphFont(nullptr, {32, 43, 400, u"DejaVu Sans"}), nullptr);
    ClearGlyphBitmap(nullptr);
    ReadGlyphBitmap(nullptr, 4, 4, nullptr);
    DrawGlyphs(nullptr, nullptr, u"A", 1, 4);
    DrawGlyphs(m_pDevice, nullptr, u"A", 1, 72); // with what the device came with
    EXPECT_EQ(GlyphExtent(nullptr, nullptr, u"A", 1), 0);
    EXPECT_FALSE(FontHasGlyph(nullptr, nullptr, u"A", 1));
    EXPECT_FALSE(FontCoversCode(nullptr, nullptr, 'A'));
    DestroyGlyphFont(nullptr);
    DestroyGlyphBitmap(nullptr);
    DestroyGlyphDevice(nullptr);
}

TEST_F(Glyphs, NoObjectIsLeftBehind) {
    const auto round = [] {
        GlyphDevice* const pDevice = CreateGlyphDevice();
        GlyphBitmap* const pBitmap = CreateGlyphBitmap(pDevice, 16, 16);
        GlyphFont* const pFont = CreateGlyphFont(pDevice, {8, 11, 400, u"DejaVu Sans"});
        DrawGlyphs(pDevice, pFont, u"A", 1, 9);
        std::vector<u8> rows(48 * 16);
        ReadGlyphBitmap(pDevice, 16, 16, rows.data());
        const bool bDrawn = std::count(rows.begin(), rows.end(), 255) > 0;
        DestroyGlyphDevice(pDevice);
        DestroyGlyphBitmap(pBitmap);
        DestroyGlyphFont(pFont);
        return bDrawn;
    };
    // A process has 10,000 handles, under Wine 16,384: later rounds would find none.
    for (u32 i = 0; i < 17000; ++i) ASSERT_TRUE(round()) << i;
}

} // namespace
