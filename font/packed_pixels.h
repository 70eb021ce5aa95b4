#pragma once
// Pixels that nobody looks at for now. Glyphs leave most of an atlas blank, and what is not is in runs.
#include "platform/types.h"

#include <cstddef>
#include <memory>

class CPackedPixels {
  public:
    bool IsEmpty() const noexcept { return !m_pWords; }
    /// Takes a copy. False, and nothing kept, without memory or if it would save less than half.
    bool Take(const u8* pPixels, std::size_t uBytes) noexcept;
    /// Writes them into the blank place that they were taken from, and keeps nothing.
    void Give(u8* pPixels) noexcept;
    void Drop() noexcept { m_pWords.reset(); }

  private:
    std::unique_ptr<u64[]>
        m_pWords; ///< number of blank words, number of others, those; until a pair of zeros
};
