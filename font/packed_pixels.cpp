#include "font/packed_pixels.h"

#include <cstring>
#include <new>

namespace {

/// A run of blank words and one of others behind it.
struct Run {
    u64 uBlank = 0, uOther = 0;
};

u64 WordAt(const u8* pPixels, std::size_t u) noexcept {
    u64 uWord;
    std::memcpy(&uWord, pPixels + u * sizeof uWord, sizeof uWord);
    return uWord;
}

Run NextRun(const u8* pPixels, std::size_t uFrom, std::size_t uWords) noexcept {
    Run st;
    while (uFrom + st.uBlank < uWords && WordAt(pPixels, uFrom + st.uBlank) == 0) ++st.uBlank;
    const std::size_t uBegin = uFrom + st.uBlank;
    while (uBegin + st.uOther < uWords && WordAt(pPixels, uBegin + st.uOther) != 0) ++st.uOther;
    return st;
}

/// Words that the packed form takes, with the end.
std::size_t PackedWords(const u8* pPixels, std::size_t uWords) noexcept {
    std::size_t uPacked = 2;
    for (std::size_t u = 0; u < uWords;) {
        const Run st = NextRun(pPixels, u, uWords);
        uPacked += 2 + st.uOther;
        u += st.uBlank + st.uOther;
    }
    return uPacked;
}

} // namespace

bool CPackedPixels::Take(const u8* pPixels, std::size_t uBytes) noexcept {
    Drop();
    const std::size_t uWords = uBytes / sizeof(u64);
    if (uBytes % sizeof(u64) != 0) return false;
    const std::size_t uPacked = PackedWords(pPixels, uWords);
    if (uPacked > uWords / 2) return false;
    m_pWords.reset(new (std::nothrow) u64[uPacked]());
    u64* pOut = m_pWords.get();
    for (std::size_t u = 0; pOut && u < uWords;) {
        const Run st = NextRun(pPixels, u, uWords);
        *pOut++ = st.uBlank;
        *pOut++ = st.uOther;
        std::memcpy(pOut, pPixels + (u + st.uBlank) * sizeof(u64), st.uOther * sizeof(u64));
        pOut += st.uOther;
        u += st.uBlank + st.uOther;
    }
    return !IsEmpty();
}

void CPackedPixels::Give(u8* pPixels) noexcept {
    const u64* pIn = m_pWords.get();
    while (pIn && (pIn[0] != 0 || pIn[1] != 0)) {
        pPixels += pIn[0] * sizeof(u64);
        const std::size_t uOther = pIn[1];
        std::memcpy(pPixels, pIn + 2, uOther * sizeof(u64));
        pPixels += uOther * sizeof(u64);
        pIn += 2 + uOther;
    }
    Drop();
}
