#include "font/packed_pixels.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr u64 g_u64Ones = 0x0101010101010101;
constexpr std::size_t g_uLongestRun = 0xFFFF, g_uRunBytes = 2 * sizeof(u16);

/// A run of blank words and one of others behind it.
struct Run {
    u16 uBlank = 0, uOther = 0;
};

u64 WordAt(const u8* pPixels, std::size_t u) noexcept {
    u64 uWord;
    std::memcpy(&uWord, pPixels + u * sizeof uWord, sizeof uWord);
    return uWord;
}

Run NextRun(const u8* pPixels, std::size_t uFrom, std::size_t uWords) noexcept {
    const std::size_t uBlankEnd = std::min(uWords, uFrom + g_uLongestRun);
    std::size_t u = uFrom;
    while (u < uBlankEnd && WordAt(pPixels, u) == 0) ++u;
    Run st{static_cast<u16>(u - uFrom), 0};
    const std::size_t uOtherEnd = std::min(uWords, u + g_uLongestRun);
    for (; u < uOtherEnd && WordAt(pPixels, u) != 0; ++u) ++st.uOther;
    return st;
}

/// All pixels are 0 or 255.
bool IsOfBits(u64 uWord) noexcept { return (uWord & g_u64Ones) * 0xFF == uWord; }

/// The lowest bits of the eight pixels, the first one lowest: each lands in another bit of the highest byte.
u8 BitsOf(u64 uWord) noexcept { return static_cast<u8>((uWord & g_u64Ones) * 0x0102040810204080 >> 56); }

u64 WordOf(u8 uBits) noexcept {
    u64 uWord = 0;
    for (u32 u = 0; u < 8; ++u) uWord |= u64{(uBits >> u & 1) ? 0xFFu : 0u} << (8 * u);
    return uWord;
}

struct Sizes {
    std::size_t uRuns = 1, uOther = 0; ///< with the end
    bool bBits = true;
};

Sizes Measure(const u8* pPixels, std::size_t uWords) noexcept {
    Sizes st;
    for (std::size_t u = 0; u < uWords; ++st.uRuns) {
        const Run run = NextRun(pPixels, u, uWords);
        u += run.uBlank;
        for (u32 i = 0; i < run.uOther; ++i) st.bBits = st.bBits && IsOfBits(WordAt(pPixels, u + i));
        u += run.uOther;
        st.uOther += run.uOther;
    }
    return st;
}

u8* PutRun(u8* pOut, const Run& run, const u8* pPixels, bool bBits) noexcept {
    const u16 au[2] = {run.uBlank, run.uOther};
    std::memcpy(pOut, au, g_uRunBytes);
    pOut += g_uRunBytes;
    for (u32 u = 0; bBits && u < run.uOther; ++u) *pOut++ = BitsOf(WordAt(pPixels, run.uBlank + u));
    if (bBits) return pOut;
    const std::size_t uBytes = run.uOther * sizeof(u64);
    std::memcpy(pOut, pPixels + run.uBlank * sizeof(u64), uBytes);
    return pOut + uBytes;
}

} // namespace

bool CPackedPixels::Take(const u8* pPixels, std::size_t uBytes) noexcept {
    Drop();
    const std::size_t uWords = uBytes / sizeof(u64);
    if (uBytes % sizeof(u64) != 0) return false;
    const Sizes st = Measure(pPixels, uWords);
    const std::size_t uPacked = st.uRuns * g_uRunBytes + st.uOther * (st.bBits ? 1 : sizeof(u64));
    if (uPacked > uBytes / 2) return false;
    m_pBytes.reset(new (std::nothrow) u8[uPacked]());
    m_bBits = st.bBits;
    u8* pOut = m_pBytes.get();
    for (std::size_t u = 0; pOut && u < uWords;) {
        const Run run = NextRun(pPixels, u, uWords);
        pOut = PutRun(pOut, run, pPixels + u * sizeof(u64), m_bBits);
        u += run.uBlank + run.uOther;
    }
    return !IsEmpty();
}

void CPackedPixels::Give(u8* pPixels) noexcept {
    const u8* pIn = m_pBytes.get();
    for (u16 au[2]; pIn; pIn += au[1] * (m_bBits ? 1 : sizeof(u64))) {
        std::memcpy(au, pIn, g_uRunBytes);
        if (au[0] == 0 && au[1] == 0) break;
        pIn += g_uRunBytes;
        pPixels += au[0] * sizeof(u64);
        for (u32 u = 0; u < au[1]; ++u, pPixels += sizeof(u64)) {
            const u64 uWord = m_bBits ? WordOf(pIn[u]) : WordAt(pIn, u);
            std::memcpy(pPixels, &uWord, sizeof uWord);
        }
    }
    Drop();
}
