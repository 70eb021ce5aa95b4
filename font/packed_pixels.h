#pragma once
// Pixels that nobody looks at for now. Glyphs leave most of an atlas blank, and most of their pixels are
// either blank or full.
#include "platform/types.h"

#include <cstddef>
#include <memory>

class CPackedPixels {
  public:
    bool IsEmpty() const noexcept { return !m_pBytes; }
    /// Takes a copy. False, and nothing kept, without memory or if it would save less than half.
    bool Take(const u8* pPixels, std::size_t uBytes) noexcept;
    /// Writes them into the blank place that they were taken from, and keeps nothing.
    void Give(u8* pPixels) noexcept;
    void Drop() noexcept { m_pBytes.reset(); }

  private:
    /// Runs until a pair of zeros: number of blank words, number of others (16 bits each), those. A word is
    /// eight pixels: a byte with a bit for each, or the pixels themselves.
    std::unique_ptr<u8[]> m_pBytes;
    bool m_bBits = false;
};
