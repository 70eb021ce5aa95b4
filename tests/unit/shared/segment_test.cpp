#include "tests/support/headless/shared_fixture.h"
#include <cstring>

namespace {

constinit stSharedSegment s_stImage = g_fnInitialSegmentImage();

std::vector<std::size_t> NonZeroBytes(const stSharedSegment& stSegment) {
    std::vector<unsigned char> vecBytes(sizeof stSegment);
    std::memcpy(vecBytes.data(), &stSegment, vecBytes.size());
    std::vector<std::size_t> vecFound;
    for (std::size_t u = 0; u < vecBytes.size(); ++u)
        if (vecBytes[u]) vecFound.push_back(u);
    return vecFound;
}

} // namespace

TEST(Segment, HasTheExactSize) { EXPECT_EQ(sizeof(stSharedSegment), 0xCB170u); }

TEST(Segment, InitialImageHoldsFiveOnes) {
    const std::vector<std::size_t> vecExpected = {0x11, 0x5930 + 136, 0x5930 + 148, 0x5930 + 164,
                                                  0x5930 + 180};
    EXPECT_EQ(NonZeroBytes(s_stImage), vecExpected);
    for (const std::size_t u : vecExpected)
        EXPECT_EQ(reinterpret_cast<const unsigned char*>(&s_stImage)[u], 1);
}

TEST(Segment, ImageAppliedAtRunTimeIsTheSame) {
    static stSharedSegment s_stApplied;
    g_fnApplyInitialImage(s_stApplied);
    EXPECT_EQ(std::memcmp(&s_stApplied, &s_stImage, sizeof s_stImage), 0);
}
