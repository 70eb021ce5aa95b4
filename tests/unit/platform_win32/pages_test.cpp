#include "platform/pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

static constexpr std::size_t g_uLarge = 64u << 20;

TEST(Pages, ALargeBlockIsZeroAndCanBeWritten) {
    u8* const pBlock = platform::AllocatePages(g_uLarge);
    ASSERT_NE(pBlock, nullptr);
    EXPECT_EQ(pBlock[g_uLarge - 1], 0);
    pBlock[0] = pBlock[g_uLarge - 1] = 1;
    platform::FreePages(pBlock, g_uLarge);
}

TEST(Pages, ASmallBlockIsZero) {
    for (const std::size_t uBytes : {std::size_t{1}, std::size_t{65535}, std::size_t{65536}}) {
        u8* const pBlock = platform::AllocatePages(uBytes);
        ASSERT_NE(pBlock, nullptr);
        EXPECT_EQ(static_cast<std::size_t>(std::count(pBlock, pBlock + uBytes, 0)), uBytes);
        std::fill_n(pBlock, uBytes, u8{7}); // the next one is zero all the same
        platform::FreePages(pBlock, uBytes);
    }
}

TEST(Pages, NoBytesAndTooManyGiveNothing) {
    EXPECT_EQ(platform::AllocatePages(0), nullptr);
    EXPECT_EQ(platform::AllocatePages(SIZE_MAX / 2), nullptr);
    platform::FreePages(nullptr, 5);
}
