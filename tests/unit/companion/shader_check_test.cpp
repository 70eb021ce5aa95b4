#include "companion/profile_folder.h"
#include "companion/shader_check.h"
#include "platform/tool.h"
#include "tests/support/odd_files.h"
#include <gtest/gtest.h>

using namespace companion;
namespace fs = std::filesystem;

namespace {

/// The shipped shaders in a folder of the test's own.
class CompanionShaders : public ::testing::Test {
  protected:
    void SetUp() override {
        m_path = PathOfText(platform::tool::TempFolder()) /
                 ("orvin-shaders-" + std::to_string(platform::tool::OwnProcessId()));
        fs::remove_all(m_path);
        fs::copy(ORVIN_SOURCE_DIR "/shaders", m_path);
    }
    void TearDown() override { fs::remove_all(m_path); }
    void Write(const char* szName, const std::string& strText) {
        std::ofstream(m_path / szName, std::ios::binary) << strText;
    }
    std::vector<std::string> Faults() { return ShaderFaults(m_path); }

    fs::path m_path;
};

using Words = std::vector<std::string>;

TEST_F(CompanionShaders, TheShippedOnesHaveNoFault) { EXPECT_EQ(Faults(), Words{}); }

TEST_F(CompanionShaders, MissingEmptyAndLargeOnesAreNamed) {
    fs::remove(m_path / "DrawBasic_GL_C.vs");
    Write("DrawText_GL.fs", "");
    Write("DrawText_GL_G.fs", std::string(1024 * 1024 + 1, '\n'));
    EXPECT_EQ(Faults(), (Words{"shader DrawBasic_GL_C.vs is missing", "shader DrawText_GL.fs is empty",
                               "shader DrawText_GL_G.fs is larger than 1024 KiB"}));
}

TEST_F(CompanionShaders, ThoseOfMergedDrawingAreLookedAtWhereTheyAreThere) {
    fs::remove(m_path / "DrawMerged_GL_C.vs");
    EXPECT_EQ(Faults(), Words{}) << "the others draw without it";
    Write("DrawMerged_GL_TG.fs", "");
    Write("DrawMerged_GL_CB.fs", std::string(254, '/'));
    EXPECT_EQ(Faults(),
              (Words{"shader DrawMerged_GL_CB.fs has more than 253 bytes in line 1, which ends every "
                     "program that loads it",
                     "shader DrawMerged_GL_TG.fs is empty"}));
}

TEST_F(CompanionShaders, EveryShippedFileIsLookedAt) {
    for (const auto& entry : fs::directory_iterator(ORVIN_SOURCE_DIR "/shaders")) {
        const std::string strName = entry.path().filename().string();
        Write(strName.c_str(), "");
        EXPECT_EQ(Faults(), Words{"shader " + strName + " is empty"});
        fs::copy_file(entry.path(), m_path / strName, fs::copy_options::overwrite_existing);
    }
}

TEST_F(CompanionShaders, WhatIsNoPlainFileIsNamedWithoutReadingIt) {
    ForEachOddFile(TextOfPath(m_path / "DrawBasic_GL_Tex.fs"), [&](const char* szKind) {
        ASSERT_EQ(Faults().size(), 1u) << szKind;
        const bool bPlain = std::string(szKind).starts_with("file");
        EXPECT_EQ(Faults()[0], bPlain ? "shader DrawBasic_GL_Tex.fs is larger than 1024 KiB"
                                      : "shader DrawBasic_GL_Tex.fs is no plain file");
    });
}

TEST_F(CompanionShaders, ALongLineCountsOnlyWhereLinesAreCopied) {
    const std::string strLong(254, '/'), strStart = "#version 150\r\n\n";
    Write("DrawBasic_GL_CB.vs", strStart + strLong);
    EXPECT_EQ(Faults(), Words{});
    Write("DrawBasic_GL_CB.fs", strStart + strLong.substr(1) + "\r\n");
    EXPECT_EQ(Faults(), Words{}) << "253 bytes";
    Write("DrawBasic_GL_CB.fs", strStart + strLong + "\r\n");
    EXPECT_EQ(Faults(), Words{"shader DrawBasic_GL_CB.fs has more than 253 bytes in line 3, which ends every "
                              "program that loads it"});
    Write("DrawBasic_GL_CB.fs", strStart + std::string(1, '\0') + strLong);
    EXPECT_EQ(Faults(), Words{}) << "behind the text's end";
}

} // namespace
