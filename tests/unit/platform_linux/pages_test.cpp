#include "platform/pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t g_uLarge = 64u << 20;

/// Pages of a block that have memory of their own.
long PagesHeld(u8* pBlock, std::size_t uBytes) {
    const std::size_t uPage = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    std::vector<unsigned char> held((uBytes + uPage - 1) / uPage);
    EXPECT_EQ(mincore(pBlock, uBytes, held.data()), 0);
    return std::count_if(held.begin(), held.end(), [](unsigned char c) { return c & 1; });
}

} // namespace

TEST(Pages, ALargeBlockTakesMemoryOnlyWhereItIsWritten) {
    u8* const pBlock = platform::AllocatePages(g_uLarge);
    ASSERT_NE(pBlock, nullptr);
    EXPECT_EQ(PagesHeld(pBlock, g_uLarge), 0);
    pBlock[g_uLarge / 2] = 1;
    EXPECT_EQ(PagesHeld(pBlock, g_uLarge), 1);
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
