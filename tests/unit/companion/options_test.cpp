#include "companion/commands.h"
#include "companion/options.h"
#include "companion/target.h"
#include <gtest/gtest.h>

using namespace companion;
using Words = std::vector<std::string>;

namespace {

Options Accepted(Words listWords) {
    const Parsed st = ParseArguments(std::move(listWords));
    EXPECT_FALSE(st.bLeave) << st.strText;
    return st.stOptions;
}

/// The error line of a command line that is refused with the usage code.
std::string Refused(Words listWords) {
    const Parsed st = ParseArguments(std::move(listWords));
    EXPECT_TRUE(st.bLeave);
    EXPECT_EQ(st.iExitCode, 2);
    EXPECT_EQ(st.strText.find('\n'), std::string::npos);
    return st.strText;
}

} // namespace

TEST(CompanionOptions, RunTakesTheProgramsOwnOptions) {
    const Options st = Accepted({"run", "glxgears", "-info", "--help"});
    EXPECT_EQ(st.eVerb, Verb::Run);
    EXPECT_EQ(st.strTarget, "glxgears");
    EXPECT_EQ(st.listArguments, (Words{"-info", "--help"}));
}

TEST(CompanionOptions, RunWithSeparator) {
    const Options st = Accepted({"run", "--library", "/x/lib.so", "--", "-odd", "a b", "--", "--library"});
    EXPECT_EQ(st.strLibrary, "/x/lib.so");
    EXPECT_EQ(st.strTarget, "-odd");
    EXPECT_EQ(st.listArguments, (Words{"a b", "--", "--library"}));
}

TEST(CompanionOptions, SeparatorBehindTheProgramIsTheProgramsOwn) {
    const Options st = Accepted({"run", "sh", "-c", "--", "x"});
    EXPECT_EQ(st.strTarget, "sh");
    EXPECT_EQ(st.listArguments, (Words{"-c", "--", "x"}));
}

TEST(CompanionOptions, RunOfAProgramNamedLikeACommand) {
    EXPECT_EQ(Accepted({"run", "--", "status"}).strTarget, "status");
    EXPECT_EQ(Accepted({"run", "--", "status"}).eVerb, Verb::Run);
    EXPECT_EQ(Accepted({"run", "prog", "dump"}).listArguments, Words{"dump"});
}

TEST(CompanionOptions, RunWithoutProgram) {
    EXPECT_EQ(Refused({"run"}), "run: PROGRAM is required");
    EXPECT_EQ(Refused({"run", "--"}), "run: PROGRAM is required");
    EXPECT_NE(Refused({"run", "--bogus", "prog"}).find("--bogus"), std::string::npos);
}

TEST(CompanionOptions, HookNeedsItsConfirmation) {
    EXPECT_NE(Refused({"hook"}).find("--yes"), std::string::npos);
    const Options st = Accepted({"hook", "--yes", "--init"});
    EXPECT_TRUE(st.bYes && st.bInit);
    EXPECT_FALSE(Accepted({"hook", "--yes"}).bInit);
}

TEST(CompanionOptions, AttachStaysUnlessTold) {
    EXPECT_TRUE(Accepted({"attach", "game.exe"}).bStay);
    EXPECT_FALSE(Accepted({"attach", "game.exe", "--no-stay"}).bStay);
    Refused({"attach"});
}

TEST(CompanionOptions, SendWithEverything) {
    const Options st = Accepted({"send", "4", "--pid", "5", "--tid", "6", "--arg", "0x1F", "--filter-pid",
                                 "7", "--filter-tid", "8", "--filter-profile", "Mine", "--byte", "65",
                                 "--positions", "1,2,3,4,5,6,7,8,9,10"});
    EXPECT_EQ(st.eVerb, Verb::Send);
    EXPECT_EQ(st.uCommand, 4u);
    EXPECT_EQ(st.uPid, 5u);
    EXPECT_EQ(st.uTid, 6u);
    EXPECT_EQ(st.iArgument, 0x1F);
    EXPECT_EQ(st.uFilterPid, 7u);
    EXPECT_EQ(st.uFilterTid, 8u);
    EXPECT_EQ(st.strFilterProfile, "Mine");
    EXPECT_EQ(st.uByte, 65);
    EXPECT_EQ(st.listPositions, (std::vector<u32>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(CompanionOptions, SendKeepsAllBitsOfItsArgument) {
    EXPECT_EQ(Accepted({"send", "4", "--arg", "4294967296"}).iArgument, 4294967296);
    EXPECT_EQ(Accepted({"send", "4", "--arg", "-1"}).iArgument, -1);
    EXPECT_EQ(Accepted({"send", "0xFFFFFFFF"}).uCommand, 0xFFFFFFFFu);
}

TEST(CompanionOptions, SendRefusesNumbersOutOfRange) {
    Refused({"send"});
    Refused({"send", "x"});
    Refused({"send", "4294967296"});
    Refused({"send", "5", "--byte", "256"});
    Refused({"send", "5", "--byte", "-1"});
    Refused({"send", "3", "--pid", "-4"});
    Refused({"send", "4", "--positions", "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17"});
}

TEST(CompanionOptions, ProfileIsOnePlainFolderName) {
    EXPECT_EQ(Accepted({"profile-name", "My Profile"}).strTarget, "My Profile");
    EXPECT_EQ(Accepted({"profile-name", ""}).strTarget, "");
    for (const char* szBad : {"..", ".", "a/b", "a\\b", "C:x", "a\nb", "\xFF"})
        Refused({"profile-name", szBad});
    Accepted({"profile-name", std::string(511, 'p')});
    Refused({"profile-name", std::string(512, 'p')});
    EXPECT_FALSE(Accepted({"profile-name", "New"}).stProfile.bForce);
    EXPECT_TRUE(Accepted({"profile-name", "New", "--force"}).stProfile.bForce);
    Accepted({"send", "3", "--filter-profile", std::string(63, 'p')});
    Refused({"send", "3", "--filter-profile", std::string(64, 'p')});
}

TEST(CompanionOptions, FrameTimeOnAndOff) {
    EXPECT_TRUE(Accepted({"frametime", "on"}).bEnable);
    EXPECT_FALSE(Accepted({"frametime", "off"}).bEnable);
    Refused({"frametime", "maybe"});
}

TEST(CompanionOptions, DumpAsTextOrJsonButNotBoth) {
    EXPECT_TRUE(Accepted({"dump", "--json", "--all", "--raw"}).bJson);
    EXPECT_FALSE(Accepted({"dump", "--text"}).bJson);
    Refused({"dump", "--json", "--text"});
}

TEST(CompanionOptions, HelpIsNoError) {
    const Words alistWords[] = {{"--help"}, {"run", "--help"}, {"send", "-h"}, {"hook", "--help"}};
    for (const Words& listWords : alistWords) {
        const Parsed st = ParseArguments(listWords);
        EXPECT_TRUE(st.bLeave);
        EXPECT_EQ(st.iExitCode, 0);
        EXPECT_NE(st.strText.find("Usage"), std::string::npos);
        EXPECT_NE(st.strText.find("Exit codes: 0"), std::string::npos);
    }
}

TEST(CompanionOptions, UnknownWordsAreRefused) {
    EXPECT_EQ(Refused({}), "a command is required");
    EXPECT_EQ(Refused({"bogus"}), "unknown command bogus");
    Refused({"--bogus"});
    Refused({"status", "extra"});
    Refused({"status", "dump"});
}

TEST(CompanionOptions, ProcessIdsAreWholeNumbersAboveZero) {
    u32 uId = 0;
    EXPECT_TRUE(ParseProcessId("4294967295", uId));
    EXPECT_EQ(uId, 4294967295u);
    for (const char* szBad : {"", "0", "-1", "12x", " 12", "4294967296", "game.exe"}) {
        EXPECT_FALSE(ParseProcessId(szBad, uId)) << szBad;
    }
}

TEST(CompanionCommands, ExitCodes) {
    EXPECT_EQ(Main({"status", "--library", "no/such/library"}), 3);
    EXPECT_EQ(Main({"bogus"}), 2);
    EXPECT_EQ(Main({"--help"}), 0);
}

TEST(CompanionCommands, AFileThatIsNoLibraryIsAFailure) {
    EXPECT_EQ(Main({"status", "--library", ORVIN_SOURCE_DIR "/CMakeLists.txt"}), 1);
}

TEST(CompanionOptions, VersionIsPrintedAndEnds) {
    const Parsed st = ParseArguments({"--version"});
    EXPECT_TRUE(st.bLeave);
    EXPECT_EQ(st.iExitCode, 0);
    ASSERT_TRUE(st.strText.starts_with("orvin-osd ")) << st.strText;
    EXPECT_EQ(std::count(st.strText.begin(), st.strText.end(), '.'), 2) << st.strText;
}
