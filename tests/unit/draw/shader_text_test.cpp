#include "base/log.h"
#include "draw/gl_shader.h"
#include "tests/support/odd_files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

static const ShaderDefines g_aTwo = {{"B_NAME", "2"}, {"A_NAME", "1"}};

TEST(InsertDefines, StandDirectlyBehindTheVersionLineInKeyOrder) {
    EXPECT_EQ(g_fnInsertDefines("#version 150\nvoid main() {}\n", g_aTwo),
              "#version 150\n\r#define A_NAME 1\n\r#define B_NAME 2\n\rvoid main() {}\n\r");
}

TEST(InsertDefines, CrLfAndBlankLinesVanish) {
    EXPECT_EQ(g_fnInsertDefines("// head\r\n\r\n#version 150\r\n\r\n\n\nin vec2 p;\r\n\r\n", {{"N", "30"}}),
              "// head\n\r#version 150\n\r#define N 30\n\rin vec2 p;\n\r");
}

TEST(InsertDefines, WithoutVersionTheTextIsRewrittenAndTheDefineIsLost) {
    EXPECT_EQ(g_fnInsertDefines("a\r\n\r\nb", g_aTwo), "a\n\rb\n\r");
}

TEST(InsertDefines, LeadingBlankLinesDoNoHarm) {
    EXPECT_EQ(g_fnInsertDefines("\r\n\n\n#version 150\nx", {{"N", "1"}}),
              "#version 150\n\r#define N 1\n\rx\n\r");
}

TEST(InsertDefines, VersionBehindBlanksIsNotRecognised) {
    EXPECT_EQ(g_fnInsertDefines("  #version 150\nx", {{"N", "1"}}), "  #version 150\n\rx\n\r");
}

TEST(InsertDefines, OnlyTheFirstVersionLineCounts) {
    EXPECT_EQ(g_fnInsertDefines("#version 150\n#version 330\n", {{"N", "1"}}),
              "#version 150\n\r#define N 1\n\r#version 330\n\r");
}

TEST(InsertDefines, TheFirstEightBytesDecide) {
    EXPECT_EQ(g_fnInsertDefines("#versions\nx", {{"N", "1"}}), "#versions\n\r#define N 1\n\rx\n\r");
    EXPECT_EQ(g_fnInsertDefines("#versio\nx", {{"N", "1"}}), "#versio\n\rx\n\r");
}

TEST(InsertDefines, AnEmptyMapStillRewrites) {
    EXPECT_EQ(g_fnInsertDefines("#version 150\r\n\r\nx", {}), "#version 150\n\rx\n\r");
}

TEST(InsertDefines, ALineWithoutEndIsALine) {
    EXPECT_EQ(g_fnInsertDefines("#version 150", {{"N", "1"}}), "#version 150\n\r#define N 1\n\r");
}

TEST(InsertDefines, NothingComesOfNothing) {
    EXPECT_EQ(g_fnInsertDefines("", g_aTwo), "");
    EXPECT_EQ(g_fnInsertDefines("\r\n\n\r", g_aTwo), "");
}

TEST(InsertDefines, TheTextEndsAtANul) {
    EXPECT_EQ(g_fnInsertDefines(std::string_view("#version 150\nab\0cd\nef", 22), {{"N", "1"}}),
              "#version 150\n\r#define N 1\n\rab\n\r");
}

TEST(InsertDefines, LongestLinePasses) {
    const std::string strLine(253, 'x');
    EXPECT_EQ(g_fnInsertDefines(strLine + "\ny", g_aTwo), strLine + "\n\ry\n\r");
}

static void LogToStandardError(const char* szLine) { std::fprintf(stderr, "%s\n", szLine); }

TEST(InsertDefinesDeathTest, ALineAboveTheLimitEndsTheProcess) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            g_fnLogSink = LogToStandardError;
            g_fnInsertDefines(std::string(254, 'x'), g_aTwo);
        },
        "GLGraphics: shader line of 254 bytes is too long");
}

TEST(InsertDefinesDeathTest, ADefineLineAboveTheLimitEndsTheProcess) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(g_fnInsertDefines("#version 150", {{"N", std::string(245, '1')}}), "");
    EXPECT_EQ(g_fnInsertDefines("#version 150", {{"N", std::string(243, '1')}}).size(), 14u + 255u);
}

TEST(ShaderFiles, WhatIsNoPlainFileCannotBeOpened) {
    const std::string strPath = ::testing::TempDir() + "orvin_odd_shader.vs";
    ForEachOddFile(strPath, [&](const char* szKind) {
        try {
            const GLShader shader(strPath.c_str(), 0x8B31); // fails before any call of GL
            ADD_FAILURE() << szKind;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ("Failed to open file : " + strPath, error.what()) << szKind;
        }
    });
    EXPECT_THROW(GLShader(strPath.c_str(), 0x8B31), std::runtime_error) << "nothing there";
}

static std::vector<std::filesystem::path> ShaderFiles() {
    std::vector<std::filesystem::path> list;
    for (const auto& entry : std::filesystem::directory_iterator(ORVIN_SOURCE_DIR "/shaders"))
        list.push_back(entry.path());
    return list;
}

TEST(ShaderFiles, KeepToWhatTheRewritingCanTake) {
    ASSERT_GE(ShaderFiles().size(), 6u);
    for (const auto& path : ShaderFiles()) {
        std::ifstream file(path, std::ios::binary);
        const std::string strText{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        EXPECT_TRUE(strText.starts_with("#version 150\n")) << path;
        EXPECT_EQ(strText.find('\0'), std::string::npos) << path;
        EXPECT_EQ(strText.find("\\\n"), std::string::npos) << path;
        std::size_t uStart = 0;
        for (std::size_t uEnd; (uEnd = strText.find('\n', uStart)) != std::string::npos; uStart = uEnd + 1)
            EXPECT_LE(uEnd - uStart, g_uShaderLineLimit) << path;
    }
}
