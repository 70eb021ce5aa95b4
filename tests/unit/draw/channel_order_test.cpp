#include "draw/channel_order.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

using Bytes = std::vector<u8>;

Bytes Reordered(const Bytes& from, const char* szFrom, const char* szTo) {
    Bytes to(from.size(), 99);
    g_fnReorderChannels(from.data(), szFrom, to.data(), szTo, from.size() / 4);
    return to;
}

TEST(ChannelOrder, RedAndBlueChangePlaces) {
    EXPECT_EQ(Reordered({1, 2, 3, 4, 5, 6, 7, 8}, "BGRA", "RGBA"), (Bytes{3, 2, 1, 4, 7, 6, 5, 8}));
    EXPECT_EQ(Reordered({1, 2, 3, 4}, "RGBA", "BGRA"), (Bytes{3, 2, 1, 4}));
}

TEST(ChannelOrder, TheSameOrderIsACopy) {
    EXPECT_EQ(Reordered({1, 2, 3, 4}, "RGBA", "RGBA"), (Bytes{1, 2, 3, 4}));
}

TEST(ChannelOrder, ALetterThatTheSourceLacksAndXBecome255) {
    EXPECT_EQ(Reordered({1, 2, 3, 4}, "BGRX", "RGBA"), (Bytes{3, 2, 1, 255}));
    EXPECT_EQ(Reordered({1, 2, 3, 4}, "XGRA", "RGBX"), (Bytes{3, 2, 255, 255}));
}

} // namespace
