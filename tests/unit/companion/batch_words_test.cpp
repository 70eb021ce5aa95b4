#include "platform/tool_batch.h"
#include <gtest/gtest.h>

using namespace platform::tool;

TEST(CompanionBatch, FilesOfTheCommandInterpreterAreKnownByTheirEnd) {
    for (const char* szBatch :
         {"x.bat", "X.BAT", "a b.Cmd", "C:\\tools\\x.cmd", "x.bat.", "x.bat .. ", ".bat"})
        EXPECT_TRUE(IsBatchFile(szBatch)) << szBatch;
    for (const char* szOther : {"x.exe", "bat", "x.bat.exe", "x.batch", "", "cmd", "x.bat\\y"})
        EXPECT_FALSE(IsBatchFile(szOther)) << szOther;
}

TEST(CompanionBatch, WordsThatTheInterpreterReadsAsCommandsAreRefused) {
    EXPECT_EQ(BatchFault({"x.bat", "plain", "two words", "C:\\a (b)\\c", "--key=value", ""}), "");
    for (const char* szBad : {"\"&calc", "a&b", "a|b", "%PATH%", "<in", ">out", "^", "a\nb", "a\rb"}) {
        const std::string strFault = BatchFault({"x.bat", "plain", szBad});
        EXPECT_NE(strFault.find("batch file"), std::string::npos) << szBad;
        EXPECT_TRUE(strFault.ends_with(szBad));
    }
}
