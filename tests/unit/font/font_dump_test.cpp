#include "base/log.h"
#include "test_font.h"

#include <gtest/gtest.h>

#include <cstdio>

static std::vector<std::string> g_aLines;

/// A font of 2 by 2 cells of 4 pixels; nominal size 2.
struct FontDump : testing::Test {
    void SetUp() override {
        m_pFont = ReadyFont(2, 4, u"Face");
        ASSERT_NE(m_pFont, nullptr);
        m_pFont->m_fnPaint = [this] { m_pFont->m_fnInk(1, 0, 2, 1), m_pFont->m_fnInk(0, 3, 1, 1, 4); };
        g_aLines.clear();
        g_fnLogSink = [](const char* szLine) { g_aLines.push_back(szLine); };
    }
    void TearDown() override { g_fnLogSink = m_fnFormer; }
    std::unique_ptr<CTestFont> m_pFont;
    void (*m_fnFormer)(const char*) = g_fnLogSink;
};

TEST_F(FontDump, CanvasAndBufferAreShownRowByRow) {
    m_pFont->m_fnDrawCharMain('A');
    m_pFont->m_fnDumpCanvas();
    const std::string dashes = "--------------------------------\n";
    EXPECT_EQ(g_aLines, (std::vector<std::string>{dashes, "Canvas\n", "00\t XX \n", "01\t    \n",
                                                  "02\t    \n", "03\t    \n", dashes}));
    g_aLines.clear();
    m_pFont->m_fnCanvasToCharBuff(1, 0, 1, 1);
    m_pFont->m_fnDumpCharBuff();
    ASSERT_EQ(g_aLines.size(), 7u);
    EXPECT_EQ(g_aLines[1], "CharBuff\n");
    EXPECT_EQ(g_aLines[2], "00\tX   \n");
}

TEST_F(FontDump, CellIsCutOutOfTheAtlas) {
    m_pFont->m_pAtlas[4 * 8 + 4] = 255; // first pixel of the last cell
    m_pFont->m_fnDumpCell(3);
    EXPECT_EQ(g_aLines, (std::vector<std::string>{"----------------\n", "00\tX   \n", "01\t    \n",
                                                  "02\t    \n", "03\t    \n", "----------------\n"}));
    g_aLines.clear();
    m_pFont->m_fnDumpCell(4);
    EXPECT_TRUE(g_aLines.empty());
}

TEST_F(FontDump, RawDrawingSaysWhereItDraws) {
    m_pFont->m_fnDrawCharRaw('A', m_pFont->m_hFont);
    EXPECT_EQ(g_aLines,
              (std::vector<std::string>{"iGDI_DrawRefY: 2\n", "m_iCharBuffW: 4\n", "m_iCharBuffH: 4\n"}));
}

/// Reads a whole file and deletes it.
static std::string TakeFile(const char* szName) {
    std::string text;
    std::FILE* const pFile = std::fopen(szName, "rb");
    if (!pFile) return "none";
    for (int c; (c = std::fgetc(pFile)) != EOF;) text += static_cast<char>(c);
    std::fclose(pFile);
    std::remove(szName);
    return text;
}

TEST_F(FontDump, AtlasIsExportedAsABitmapOfFourEqualBytes) {
    for (u32 i = 0; i < 64; ++i) m_pFont->m_pAtlas[i] = static_cast<u8>(i);
    ASSERT_TRUE(m_pFont->m_fnExportAtlas(u"prefix of test"));
    const std::string file = TakeFile("prefix of test-Face-8x8.bmp");
    ASSERT_EQ(file.size(), 54u + 64 * 4);
    const auto u32At = [&](u32 i) {
        return static_cast<u32>(static_cast<u8>(file[i])) | static_cast<u32>(static_cast<u8>(file[i + 1]))
                                                                << 8;
    };
    EXPECT_EQ(file.substr(0, 2), "BM");
    EXPECT_EQ(u32At(2), file.size());
    EXPECT_EQ(u32At(10), 54u); // where the pixels begin
    EXPECT_EQ(u32At(18), 8u);
    EXPECT_EQ(u32At(22), 8u);
    EXPECT_EQ(u32At(28), 32u);
    EXPECT_EQ(file.substr(54, 8), std::string(4, 56) + std::string(4, 57)) << "the last row first";
    EXPECT_EQ(file.substr(54 + 63 * 4), std::string(4, 7));
}

TEST_F(FontDump, NameWithoutAPrefixBeginsWithTheFace) {
    ASSERT_TRUE(m_pFont->m_fnExportAtlas(nullptr));
    EXPECT_EQ(TakeFile("Face-8x8.bmp").size(), 54u + 64 * 4);
    ASSERT_TRUE(m_pFont->m_fnExportAtlas(u""));
    EXPECT_EQ(TakeFile("Face-8x8.bmp").size(), 54u + 64 * 4);
    m_pFont->m_fnSetFontName(u"no/such/folder/face");
    EXPECT_FALSE(m_pFont->m_fnExportAtlas(nullptr));
    m_pFont->m_fnRelease();
    EXPECT_FALSE(m_pFont->m_fnExportAtlas(nullptr));
}
