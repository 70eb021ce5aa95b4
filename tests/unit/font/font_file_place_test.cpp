// Which cache file a font is looked for in, and whether it may be used.
#include "draw/data_path.h"
#include "font_file_test.h"
#include "platform/input_file.h"
#include "tests/support/odd_files.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

struct FontFilePlace : testing::Test {
    void SetUp() override { std::filesystem::create_directories(m_folder.Path("Profiles/Mine")); }
    /// The rest of a path behind the data folder.
    std::string Tail(bool bResolved, const char16_t* wzPath) const {
        const std::string path = std::filesystem::path(wzPath).string(), root = m_folder.Path("");
        return bResolved && path.starts_with(root) ? path.substr(root.size()) : "(none)";
    }
    std::string FixedTail(const char16_t* wzFolder, u32 uStyle, u32 uId) const {
        char16_t wzPath[g_uDataPathCapacity];
        return Tail(g_fnFontFilePath(wzPath, {wzFolder, uStyle}, uId), wzPath);
    }
    std::string FaceTail(const char16_t* wzFolder, u32 uStyle, const char16_t* wzFace) const {
        char16_t wzPath[g_uDataPathCapacity];
        return Tail(g_fnFontFilePath(wzPath, {wzFolder, uStyle}, wzFace), wzPath);
    }
    /// Whether a file of these bytes is taken for "Face".
    bool Takes(const std::string& bytes, const u32* pNeeded = nullptr) {
        m_folder.Write("Profiles/Mine/2-Face.fnt", bytes);
        char16_t wzPath[g_uDataPathCapacity];
        CTestFont font;
        return g_fnFontFilePath(wzPath, {u"Profiles\\Mine", 2}, u"Face") &&
               g_fnLoadFontFile(&font, wzPath, u"Face", pNeeded);
    }
    CTestDataFolder m_folder{false};
};

} // namespace

TEST_F(FontFilePlace, WhatIsNoPlainFileIsNoFont) {
    const std::string strPath = m_folder.Path("Profiles/Mine/2-Face.fnt");
    const std::u16string wzPath(strPath.begin(), strPath.end());
    ForEachOddFile(strPath, [&](const char* szKind) {
        CTestFont font;
        EXPECT_FALSE(g_fnLoadFontFile(&font, wzPath.c_str(), u"Face")) << szKind;
        EXPECT_FALSE(font.m_fnLoadFromFile(wzPath.c_str())) << szKind;
        EXPECT_FALSE(font.m_fnLoadFromFileA(strPath.c_str())) << szKind;
    });
}

TEST_F(FontFilePlace, OfAHugeFileNoMoreIsReadThanItsHeaderAsksFor) {
    m_folder.Write("Profiles/Mine/2-Face.fnt", SmallFile());
    std::filesystem::resize_file(m_folder.Path("Profiles/Mine/2-Face.fnt"), 300u << 20);
    const platform::InputFile pFile = platform::OpenInput(m_folder.Path("Profiles/Mine/2-Face.fnt").c_str());
    ASSERT_TRUE(pFile);
    EXPECT_EQ(g_fnReadFontFile(pFile.get()).size(), g_uSmallFileBytes);
}

TEST_F(FontFilePlace, LevelsAreNotReadButMustBeThere) {
    m_folder.Write("Profiles/Mine/2-Face.fnt", SmallFile());
    const std::string strPath = m_folder.Path("Profiles/Mine/2-Face.fnt");
    const platform::InputFile pFile = platform::OpenInput(strPath.c_str());
    ASSERT_TRUE(pFile);
    const std::vector<u8> head = g_fnReadFontFileHead(pFile.get());
    ASSERT_EQ(head.size(), 184u + 192u);
    EXPECT_EQ(std::ftell(pFile.get()), 184 + 192);
    stMemoryStream stream = {head.data(), static_cast<u32>(head.size()), 0};
    EXPECT_EQ(g_fnCheckFontFileHead(&stream, g_uSmallFileBytes), FONT_FILE_HAS_MORE);
    EXPECT_EQ(g_fnCheckFontFileHead(&stream, g_uSmallFileBytes - 1), FONT_FILE_SHORT_LEVELS);
    CTestFont font;
    ASSERT_TRUE(font.m_fnLoadFromOpenFile(&stream, pFile.get()));
    EXPECT_EQ(std::ftell(pFile.get()), 184 + 192 + 256);
}

TEST_F(FontFilePlace, AFontFromAFileIsTheOneFromMemory) {
    std::string bytes = SmallFile();
    for (u32 u = 0; u < 256; ++u) bytes[376 + u] = static_cast<char>(u * 7); // ink far from any glyph too
    for (const u32 uBlank : {0u, 1u, 255u, 256u}) {
        std::memset(bytes.data() + 376, 0, uBlank);
        m_folder.Write("Profiles/Mine/2-Face.fnt", bytes);
        const std::string strPath = m_folder.Path("Profiles/Mine/2-Face.fnt");
        CTestFont font, other;
        ASSERT_TRUE(Load(font, bytes));
        ASSERT_TRUE(
            g_fnLoadFontFile(&other, std::u16string(strPath.begin(), strPath.end()).c_str(), u"Face"));
        EXPECT_EQ(Saved(other), Saved(font)) << uBlank;
        EXPECT_EQ(other.m_uAtlasRows, font.m_uAtlasRows) << uBlank;
        EXPECT_EQ(other.m_mapCharIndex, font.m_mapCharIndex);
    }
}

TEST_F(FontFilePlace, HolesOfAFileAreBlack) {
    // An atlas of 1024 by 1024, large enough for holes.
    const auto pFont = ReadyFont(2, 512, u"Face");
    ASSERT_NE(pFont, nullptr);
    CTestFont* const p = pFont.get();
    p->m_fnPaint = [p] { p->m_fnInk(0, 1, 2, 4); };
    g_fnFontAddText(p, u"A");
    p->m_pAtlas[1024 * 1024 - 1] = 5;
    p->m_uAtlasRows = 1024;
    const std::string strPath = m_folder.Path("Profiles/Mine/2-Face.fnt");
    const std::u16string wzPath(strPath.begin(), strPath.end());
    ASSERT_TRUE(p->m_fnSaveToFile(wzPath.c_str()));
    EXPECT_EQ(m_folder.Read("Profiles/Mine/2-Face.fnt"), Saved(*p));
    CTestFont font;
    std::memset((font.m_fnSetLayout(2, 2, 0), font.m_fnSetTexSize(1024, 1024), font.m_fnAllocBuffers(),
                 font.m_uAtlasRows = 1024, font.m_pAtlas),
                9, 1024 * 1024); // of a font that had pixels
    ASSERT_TRUE(g_fnLoadFontFile(&font, wzPath.c_str(), u"Face"));
    EXPECT_EQ(std::memcmp(font.m_pAtlas, p->m_pAtlas, 1024 * 1024), 0);
    EXPECT_EQ(font.m_uAtlasRows, 1024u);
}

TEST_F(FontFilePlace, FixedFontsGoByStyleAndId) {
    EXPECT_EQ(FixedTail(u"Profiles\\Mine", 0, 7), "Profiles/Mine/0-7.fnt");
    EXPECT_EQ(FixedTail(u"", 1, 15), "1-15.fnt");
    EXPECT_EQ(FixedTail(nullptr, 1, 15), "1-15.fnt");
}

TEST_F(FontFilePlace, DynamicFontsGoByStyleAndFace) {
    EXPECT_EQ(FaceTail(u"Profiles\\Mine", 2, u"DejaVu Sans"), "Profiles/Mine/2-DejaVu Sans.fnt");
    EXPECT_EQ(FaceTail(nullptr, 2, u"Face"), "/2-Face.fnt");
}

TEST_F(FontFilePlace, FaceThatLeadsOutOfTheFolderHasNoFile) {
    for (const char16_t* wzFace : {u"/../../a", u"\\..\\a", u"C:a"})
        EXPECT_EQ(FaceTail(u"P", 2, wzFace), "(none)");
    EXPECT_EQ(FaceTail(u"P", 2, std::u16string(300, u'n').c_str()), "(none)");
}

TEST_F(FontFilePlace, SoundFileOfTheFaceIsTaken) { EXPECT_TRUE(Takes(SmallFile())); }

TEST_F(FontFilePlace, FontWithoutAFileIsRebuiltWithoutAWord) {
    char16_t wzPath[g_uDataPathCapacity];
    CTestFont font;
    ASSERT_TRUE(g_fnFontFilePath(wzPath, {u"Profiles\\Mine", 2}, u"Face"));
    EXPECT_FALSE(g_fnLoadFontFile(&font, wzPath, u"Face"));
    EXPECT_EQ(font.m_pChars, nullptr);
}

TEST_F(FontFilePlace, DamagedFilesAndVersionFourAreRebuilt) {
    std::string bytes = SmallFile();
    EXPECT_FALSE(Takes(""));
    EXPECT_FALSE(Takes(bytes.substr(0, bytes.size() - 1)));
    SetWord(bytes, 0, 4);
    EXPECT_FALSE(Takes(bytes));
}

TEST_F(FontFilePlace, NameThatDiffersOnlyInCaseIsRebuilt) {
    EXPECT_FALSE(Takes(SmallFile(u"face")));
    EXPECT_FALSE(Takes(SmallFile(u"Face ")));
    EXPECT_FALSE(Takes(SmallFile(u"Fac")));
}

TEST_F(FontFilePlace, FileWhoseCountIsTheWholeGridServesNoText) {
    std::string bytes = SmallFile();
    const u32 uNone = 0, uOne = 1, uTwo = 2;
    EXPECT_TRUE(Takes(bytes, &uNone));
    EXPECT_FALSE(Takes(bytes, &uOne));
    SetWord(bytes, 180, 3);
    EXPECT_TRUE(Takes(bytes, &uOne));
    EXPECT_FALSE(Takes(bytes, &uTwo));
    SetWord(bytes, 180, 5);
    EXPECT_FALSE(Takes(bytes, &uNone));
}
