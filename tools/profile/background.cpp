#include "tools/profile/background.h"
#include <algorithm>
#include <array>
#include <cmath>

namespace companion {
namespace {

using Colour = std::array<u8, 3>;

constexpr u32 kCheckerSide = 16; ///< pixels

void Put(Picture& picture, u32 uX, u32 uY, const Colour& colour) {
    std::copy(colour.begin(), colour.end(), picture.At(uX, uY));
}

void Fill(Picture& picture, const Colour& colour) {
    for (u32 uY = 0; uY < picture.uHeight; ++uY)
        for (u32 uX = 0; uX < picture.uWidth; ++uX) Put(picture, uX, uY, colour);
}

void FillChecker(Picture& picture) {
    constexpr Colour aColours[2] = {{0x8C, 0x8C, 0x8C}, {0x64, 0x64, 0x64}};
    for (u32 uY = 0; uY < picture.uHeight; ++uY)
        for (u32 uX = 0; uX < picture.uWidth; ++uX)
            Put(picture, uX, uY, aColours[(uX / kCheckerSide + uY / kCheckerSide) & 1]);
}

/// A sky over hills: soft steps of light, large and small shapes, as pictures of games have them. Whole
/// numbers only, so that it is the same everywhere.
struct Scene {
    Colour skyTop, skyLow, hillFar, hillNear, ground;
};
constexpr Scene kDark{{8, 12, 28}, {44, 38, 62}, {26, 30, 44}, {16, 20, 28}, {10, 12, 14}};
constexpr Scene kBright{{120, 176, 232}, {236, 240, 244}, {176, 200, 204}, {148, 184, 132}, {226, 214, 176}};

u8 Mix(u8 uA, u8 uB, u32 uPart, u32 uWhole) {
    return static_cast<u8>((uA * (uWhole - uPart) + uB * uPart) / uWhole);
}

Colour Mix(const Colour& a, const Colour& b, u32 uPart, u32 uWhole) {
    return {Mix(a[0], b[0], uPart, uWhole), Mix(a[1], b[1], uPart, uWhole), Mix(a[2], b[2], uPart, uWhole)};
}

/// Triangle wave: 0 up to uHeight and back over uPeriod.
u32 Wave(u32 u, u32 uPeriod, u32 uHeight) {
    const u32 uAt = u % uPeriod, uHalf = std::max(1u, uPeriod / 2);
    return uHeight * (uAt < uHalf ? uAt : uPeriod - uAt) / uHalf;
}

u32 RidgeFar(u32 uX, u32 uWidth, u32 uHeight) {
    return uHeight * 11 / 20 - Wave(uX + uWidth / 7, uWidth / 3 + 1, uHeight / 8) -
           Wave(uX, uWidth / 11 + 1, uHeight / 40);
}

u32 RidgeNear(u32 uX, u32 uWidth, u32 uHeight) {
    return uHeight * 14 / 20 - Wave(uX + uWidth / 3, uWidth / 2 + 1, uHeight / 9) -
           Wave(uX, uWidth / 17 + 1, uHeight / 60);
}

void FillScene(Picture& picture, const Scene& st) {
    const u32 uW = picture.uWidth, uH = picture.uHeight;
    for (u32 uX = 0; uX < uW; ++uX) {
        const u32 uFar = RidgeFar(uX, uW, uH), uNear = RidgeNear(uX, uW, uH);
        for (u32 uY = 0; uY < uH; ++uY) {
            Colour colour = Mix(st.skyTop, st.skyLow, std::min(uY, uFar), std::max(1u, uFar));
            if (uY >= uNear)
                colour = Mix(st.hillNear, st.ground, uY - uNear, uH - uNear);
            else if (uY >= uFar)
                colour = Mix(st.hillFar, st.hillNear, uY - uFar, std::max(1u, uNear - uFar));
            Put(picture, uX, uY, colour);
        }
    }
}

bool ParseColour(const std::string& strText, Colour& colour) {
    if (strText.size() != 7 || strText.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string::npos)
        return false;
    for (size_t u = 0; u < 3; ++u)
        colour[u] = static_cast<u8>(std::stoul(strText.substr(1 + u * 2, 2), nullptr, 16));
    return true;
}

/// Mean of the source pixels that a stretch of the target covers, at least one of them.
void Shrink(const Picture& from, const double (&adArea)[4], u8* pOut) {
    const auto fnIndex = [](double d, u32 uMost) {
        return std::min(uMost - 1, static_cast<u32>(std::max(0.0, d)));
    };
    const u32 uLeft = fnIndex(adArea[0], from.uWidth), uTop = fnIndex(adArea[1], from.uHeight);
    const u32 uRight = std::max(uLeft, fnIndex(adArea[2] - 1e-6, from.uWidth));
    const u32 uBottom = std::max(uTop, fnIndex(adArea[3] - 1e-6, from.uHeight));
    u64 auSum[3] = {}, uCount = 0;
    for (u32 uY = uTop; uY <= uBottom; ++uY)
        for (u32 uX = uLeft; uX <= uRight; ++uX, ++uCount)
            for (u32 u = 0; u < 3; ++u) auSum[u] += from.At(uX, uY)[u];
    for (u32 u = 0; u < 3; ++u) pOut[u] = static_cast<u8>((auSum[u] + uCount / 2) / uCount);
}

/// Scales to cover the whole; what then stands over on two sides is cut off equally.
void Cover(const Picture& from, Picture& to) {
    const double dScale = std::min(static_cast<double>(from.uWidth) / to.uWidth,
                                   static_cast<double>(from.uHeight) / to.uHeight);
    const double dX = (from.uWidth - dScale * to.uWidth) / 2, dY = (from.uHeight - dScale * to.uHeight) / 2;
    for (u32 uY = 0; uY < to.uHeight; ++uY) {
        for (u32 uX = 0; uX < to.uWidth; ++uX) {
            const double adArea[4] = {dX + uX * dScale, dY + uY * dScale, dX + (uX + 1) * dScale,
                                      dY + (uY + 1) * dScale};
            Shrink(from, adArea, to.At(uX, uY));
        }
    }
}

} // namespace

Result MakeBackground(const std::string& strWish, u32 uWidth, u32 uHeight, Picture& picture) {
    picture = Picture(uWidth, uHeight);
    Colour colour;
    if (strWish == "dark") {
        FillScene(picture, kDark);
    } else if (strWish == "bright") {
        FillScene(picture, kBright);
    } else if (strWish == "checker") {
        FillChecker(picture);
    } else if (strWish.starts_with("#")) {
        if (!ParseColour(strWish, colour))
            return Result::Usage("the background " + strWish + " is no colour such as #1E90FF");
        Fill(picture, colour);
    } else {
        Picture from;
        const Result stRead = ReadPicture(strWish, from);
        if (!stRead) return stRead;
        Cover(from, picture);
    }
    return {};
}

} // namespace companion
