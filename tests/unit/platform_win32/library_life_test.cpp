// The whole library brought in and taken out again: the swap is detoured in between and untouched after.
#include "platform/process.h"
#include "tests/unit/platform_win32/code_block.h"
#include "tests/unit/platform_win32/image_file.h"
#include <gtest/gtest.h>

TEST(LibraryLife, LoadedAndFreedAgainLeavesTheSwapAsItWas) {
    const u8* pSwap =
        static_cast<const u8*>(platform::FindProc(platform::LoadModule("opengl32.dll"), "wglSwapBuffers"));
    ASSERT_NE(pSwap, nullptr);
    const std::vector<u8> abBefore = BytesAt(pSwap, 64);
    for (u32 i = 0; i < 5; ++i) {
        HMODULE hLibrary = LoadLibraryA(LibraryPath().c_str());
        ASSERT_NE(hLibrary, nullptr);
        EXPECT_NE(BytesAt(pSwap, 64), abBefore) << "the entry point lays the detour";
        EXPECT_TRUE(FreeLibrary(hLibrary));
        EXPECT_EQ(BytesAt(pSwap, 64), abBefore);
        ASSERT_EQ(GetModuleHandleA("ORVIN-OSD64-GL.dll"), nullptr) << "nothing holds the library any more";
    }
}
