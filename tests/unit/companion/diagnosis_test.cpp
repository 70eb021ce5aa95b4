#include "companion/diagnosis.h"
#include "companion/reports.h"
#include "platform/tool_bytes.h"
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace companion;

namespace {

/// A program in which everything is as it should be.
Evidence Healthy() {
    Evidence st;
    st.stProcess.bExists = st.stProcess.bReadable = st.stProcess.bLibraryMapped = st.stProcess.bGlMapped =
        true;
    st.stProcess.eDetour = Detour::Ours;
    st.stProcess.strName = "game";
    st.bCommandRecord = st.bStatusRecord = st.bFramesSeen = st.bQueryFrameTime = true;
    st.eClaim = ApiClaim::OpenGL;
    st.uApiCode = 1024;
    return st;
}

PipelineState StateOf(const Evidence& st) { return Diagnose(st).eState; }

bool HasNote(const Evidence& st, const char* szPart) {
    const auto listNotes = Diagnose(st).listNotes;
    return std::any_of(listNotes.begin(), listNotes.end(),
                       [&](const std::string& strNote) { return strNote.find(szPart) != std::string::npos; });
}

} // namespace

TEST(CompanionDoctor, Running) {
    EXPECT_EQ(StateOf(Healthy()), PipelineState::Running);
    EXPECT_TRUE(Diagnose(Healthy()).listNotes.empty());
    Evidence st = Healthy();
    st.stProcess.eDetour = Detour::Preload;
    EXPECT_EQ(StateOf(st), PipelineState::Running);
}

TEST(CompanionDoctor, NoProcess) {
    EXPECT_EQ(StateOf(Evidence{}), PipelineState::NoProcess);
    Evidence st = Healthy();
    st.stProcess = {};
    EXPECT_EQ(StateOf(st), PipelineState::NoProcess);
    EXPECT_TRUE(HasNote(st, "left behind"));
}

TEST(CompanionDoctor, NotAdmitted) {
    Evidence st = Healthy();
    st.stProcess.bLibraryMapped = false;
    EXPECT_EQ(StateOf(st), PipelineState::NotAdmitted);
}

TEST(CompanionDoctor, WithoutAccessTheRecordStillTells) {
    Evidence st = Healthy();
    st.stProcess.bReadable = st.stProcess.bLibraryMapped = false;
    st.stProcess.eDetour = Detour::Unknown;
    EXPECT_EQ(StateOf(st), PipelineState::Running);
    st.bCommandRecord = st.bStatusRecord = false;
    EXPECT_EQ(StateOf(st), PipelineState::Unknown);
}

TEST(CompanionDoctor, PassiveWhenSwitchedOff) {
    Evidence st = Healthy();
    st.bGlobalEnable = false;
    st.bFramesSeen = false;
    EXPECT_EQ(StateOf(st), PipelineState::Passive);
}

TEST(CompanionDoctor, WaitingForAForeignOverlay) {
    Evidence st = Healthy();
    st.stProcess.eDetour = Detour::NotLaid;
    EXPECT_EQ(StateOf(st), PipelineState::NoDetour);
    st.stProcess.listOverlays = {"steam_api64.dll"};
    EXPECT_EQ(StateOf(st), PipelineState::WaitingForOverlay);
    st.stProcess.eDetour = Detour::Ours; // the wait is over
    EXPECT_EQ(StateOf(st), PipelineState::Running);
}

TEST(CompanionDoctor, ClaimedByAnotherFlavour) {
    Evidence st = Healthy();
    st.eClaim = ApiClaim::Direct3D;
    st.uApiCode = 0;
    EXPECT_EQ(StateOf(st), PipelineState::Foreign);
}

TEST(CompanionDoctor, NoFrame) {
    Evidence st = Healthy();
    st.bFramesSeen = false;
    st.uApiCode = 9527;
    EXPECT_EQ(StateOf(st), PipelineState::NoFrame);
}

TEST(CompanionDoctor, FramesWithoutResources) {
    Evidence st = Healthy();
    st.uApiCode = 0;
    EXPECT_EQ(StateOf(st), PipelineState::AwaitingGL);
}

TEST(CompanionDoctor, NonsenseApiCodeIsUnknown) {
    Evidence st = Healthy();
    st.uApiCode = 77;
    EXPECT_EQ(StateOf(st), PipelineState::Unknown);
    EXPECT_FALSE(Diagnose(st).strSummary.empty());
}

TEST(CompanionDoctor, ProgramWithoutARecord) {
    Evidence st = Healthy();
    st.bCommandRecord = st.bStatusRecord = false;
    st.bTablesFull = true;
    EXPECT_EQ(StateOf(st), PipelineState::Unknown);
    EXPECT_TRUE(HasNote(st, "no record"));
    EXPECT_TRUE(HasNote(st, "all 100"));
}

TEST(CompanionDoctor, Notes) {
    Evidence st = Healthy();
    st.bCommandWaiting = true;
    st.bQueryFrameTime = false;
    st.stProcess.eDetour = Detour::Other;
    st.stProcess.bGlMapped = false;
    st.eClaim = ApiClaim::Unreadable;
    for (const char* szPart :
         {"command waits", "frametime on", "does not lead", "no OpenGL", "could not be read"}) {
        EXPECT_TRUE(HasNote(st, szPart)) << szPart;
    }
}

TEST(CompanionDoctor, NamesAreBounded) {
    EXPECT_STREQ(StateName(PipelineState::Running), "running");
    EXPECT_STREQ(StateName(static_cast<PipelineState>(99)), "unknown");
    EXPECT_STREQ(DetourName(static_cast<Detour>(99)), "unknown");
    EXPECT_STREQ(ClaimName(static_cast<ApiClaim>(-1)), "unknown");
    EXPECT_EQ(ApiName(1024), "OpenGL");
    EXPECT_EQ(ApiName(9527), "not seen");
    EXPECT_EQ(ApiName(0), "none");
    EXPECT_EQ(ApiName(3), "3");
}

TEST(CompanionDoctor, ReportInTextAndJson) {
    Evidence st = Healthy();
    st.stProcess.strName = "ga\x1Bme";
    st.fFrameTime = 8.25f;
    const std::string strText = DiagnosisText(41, st, Diagnose(st));
    EXPECT_NE(strText.find("process       41 ga\\x1Bme\n"), std::string::npos);
    EXPECT_NE(strText.find("frame time    8.25 ms\n"), std::string::npos);
    EXPECT_NE(strText.find("state         running: "), std::string::npos);
    const auto js = DiagnosisJson(41, st, Diagnose(st));
    EXPECT_EQ(js["state"], "running");
    EXPECT_EQ(js["claim"], "OpenGL");
}

TEST(CompanionDoctor, ApiTag) {
    EXPECT_EQ(ClaimOfTag("OGL"), ApiClaim::OpenGL);
    EXPECT_EQ(ClaimOfTag("D3D"), ApiClaim::Direct3D);
    EXPECT_EQ(ClaimOfTag("D3\0"), ApiClaim::None);
    EXPECT_EQ(ClaimOfTag("\0\0\0"), ApiClaim::None);
}

TEST(CompanionDoctor, ModulesFromAMemoryMap) {
    ProcessFacts st;
    ReadModuleFacts("7f00-7f10 r-xp 0 08:01 1   /opt/a b/libORVIN-OSD64-GL.so\n"
                    "7f10-7f20 rw-p 0 00:00 0\n"
                    "7f20-7f30 r-xp 0 08:01 2   /usr/lib/libGLX.so.0.0.0 (deleted)\n"
                    "7f30-7f40 r-xp 0 08:01 3   /drive_c/Steam_API64.dll\n"
                    "7f40-7f50 r-xp 0 08:01 3   /drive_c/Steam_API64.dll",
                    st);
    EXPECT_TRUE(st.bReadable && st.bLibraryMapped && st.bGlMapped);
    EXPECT_EQ(st.eDetour, Detour::Preload);
    EXPECT_EQ(st.listOverlays, std::vector<std::string>{"Steam_API64.dll"});
}

TEST(CompanionDoctor, ThePreloadPartAloneIsNotTheLibrary) {
    ProcessFacts st;
    ReadModuleFacts("7f00-7f10 r-xp 0 08:01 1 /x/libORVIN-OSD64-GL-preload.so\n", st);
    EXPECT_FALSE(st.bLibraryMapped);
    EXPECT_EQ(st.eDetour, Detour::Unknown);
    ProcessFacts stEmpty;
    ReadModuleFacts("", stEmpty);
    EXPECT_FALSE(stEmpty.bReadable);
}

TEST(CompanionDoctor, ASharedMappingIsFoundByItsFile) {
    const std::string strMaps = "7f0000000000-7f0000001000 r--p 00000000 00:1a 17   /dev/shm/seg\n"
                                "7f0000001000-7f0000002000 rw-s 00001000 00:1a 17   /dev/shm/seg\n"
                                "7f0000002000-7f0000004000 rw-s 00000000 00:1b 17   /dev/shm/seg\n"
                                "7f0000007000-7f0000008000 rw-p 00000000 00:00 0 \n"
                                "7f0000008000-7f000000b000 rw-s 00000000 00:1a 17   /dev/shm/x (deleted)";
    const auto st = FindSharedMap(strMaps, {0, 0x1a, 17});
    ASSERT_TRUE(st);
    EXPECT_EQ(st->uAddress, 0x7f0000008000u);
    EXPECT_EQ(st->uBytes, 0x3000u);
    EXPECT_EQ(FindSharedMap(strMaps, {0, 0x1b, 17})->uBytes, 0x2000u);
    EXPECT_FALSE(FindSharedMap(strMaps, {0, 0x1a, 18}));
    EXPECT_FALSE(FindSharedMap("", {0, 0x1a, 17}));
    EXPECT_FALSE(FindSharedMap("\n\xFF\n-\n1-2 rw-s\n2-1 rw-s 0 00:1a 17\n", {0, 0x1a, 17}));
}

TEST(CompanionDoctor, JumpsAreRead) {
    const u8 auNear[] = {0xE9, 0x10, 0, 0, 0};
    EXPECT_EQ(ReadJump(auNear, 5, 0x1000).uAddress, 0x1015u);
    EXPECT_EQ(ReadJump(auNear, 5, 0x1000).eKind, Jump::Kind::Direct);
    const u8 auBack[] = {0xE9, 0xFB, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(ReadJump(auBack, 5, 0x1000).uAddress, 0x1000u);
    const u8 auShort[] = {0xEB, 0xFE};
    EXPECT_EQ(ReadJump(auShort, 2, 0x1000).uAddress, 0x1000u);
    const u8 auFar[] = {0xFF, 0x25, 0x20, 0, 0, 0};
    EXPECT_EQ(ReadJump(auFar, 6, 0x1000).uAddress, 0x1026u);
    EXPECT_EQ(ReadJump(auFar, 6, 0x1000).eKind, Jump::Kind::ThroughPointer);
}

TEST(CompanionDoctor, OrdinaryCodeAndCutBytesAreNoJump) {
    const u8 auCode[] = {0x48, 0x8D, 0xA4, 0x24, 0, 0, 0, 0};
    EXPECT_EQ(ReadJump(auCode, 8, 0).eKind, Jump::Kind::None);
    const u8 auNear[] = {0xE9, 0x10, 0, 0, 0};
    EXPECT_EQ(ReadJump(auNear, 4, 0).eKind, Jump::Kind::None);
    const u8 auFar[] = {0xFF, 0x25, 0, 0, 0, 0};
    EXPECT_EQ(ReadJump(auFar, 5, 0).eKind, Jump::Kind::None);
    EXPECT_EQ(ReadJump(auFar, 0, 0).eKind, Jump::Kind::None);
}
