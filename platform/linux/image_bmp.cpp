#include "platform/linux/image_reader.h"

#include <algorithm>
#include <bit>
#include <vector>

namespace platform::image {
namespace {

constexpr u32 c_uFileHead = 14, c_uCoreHead = 12, c_uInfoHead = 40;
enum Packing : u32 { Plain = 0, Rle8 = 1, Rle4 = 2, Masks = 3, AlphaMasks = 6 };

/// One channel's bits in a pixel.
struct stMask {
    u32 m_uBits = 0;

    /// The channel in 8 bits: wider ones lose their low bits, narrower ones repeat their own.
    u8 Channel(u32 uPixel) const {
        if (!m_uBits) return 0;
        const int iWidth = std::popcount(m_uBits);
        const u32 uValue = (uPixel & m_uBits) >> std::countr_zero(m_uBits);
        if (iWidth >= 8) return static_cast<u8>(uValue >> (iWidth - 8));
        u32 uOut = 0;
        for (int iShift = 8 - iWidth; iShift > -iWidth; iShift -= iWidth)
            uOut |= iShift >= 0 ? uValue << iShift : uValue >> -iShift;
        return static_cast<u8>(uOut);
    }
};

struct stColor {
    u8 m_au8[4] = {0, 0, 0, 255};
};

class CBmpReader : public CImageReader {
  public:
    using CImageReader::CImageReader;

    bool Open() override {
        if (ByteCount() < c_uFileHead + c_uCoreHead) return false;
        const u32 uHead = Number(c_uFileHead, 4);
        const bool bRead = uHead == c_uCoreHead ? ReadCoreHead() : ReadInfoHead(uHead);
        return bRead && IsKnown() && ImageSizeAllowed(m_uWidth, m_uHeight) && ReadTables(uHead) &&
               HasPixels();
    }
    bool DescribeFrame(u32, stImageFrame& st) override {
        st.m_uWidth = m_uWidth;
        st.m_uHeight = m_uHeight;
        st.m_uFormat = g_uImageRGBA8;
        return true;
    }
    bool CopyFrame(u32, u8* pPixels, std::size_t uStride) override {
        if (m_uPacking == Rle8 || m_uPacking == Rle4) return CopyPacked(pPixels, uStride);
        for (u32 y = 0; y < m_uHeight; ++y) CopyRow(y, pPixels + RowOf(y) * uStride);
        return true;
    }

  private:
    /// Low byte first; bytes beyond the file's end are 0.
    u32 Number(std::size_t uAt, u32 uCount) const {
        u32 uValue = 0;
        while (uCount--) uValue = uValue << 8 | (uAt + uCount < ByteCount() ? Bytes()[uAt + uCount] : 0u);
        return uValue;
    }
    bool ReadCoreHead();
    bool ReadInfoHead(u32 uHead);
    bool IsKnown() const;
    bool ReadTables(u32 uHead);
    void ReadMasks(u32 uHead);
    bool HasPixels();
    std::size_t RowBytes() const { return (static_cast<std::size_t>(m_uWidth) * m_uBits + 31) / 32 * 4; }
    /// Row of the picture that a row of the file is.
    u32 RowOf(u32 y) const { return m_bTopDown ? y : m_uHeight - 1 - y; }
    void CopyRow(u32 y, u8* pOut) const;
    void WriteColor(u32 uIndex, u8* pOut) const {
        const stColor st = uIndex < m_vecColors.size() ? m_vecColors[uIndex] : stColor{};
        std::copy(st.m_au8, st.m_au8 + 4, pOut);
    }
    bool CopyPacked(u8* pPixels, std::size_t uStride) const;

    u32 m_uWidth = 0, m_uHeight = 0, m_uBits = 0, m_uPacking = Plain, m_uColors = 0;
    bool m_bTopDown = false;
    stMask m_astMask[4]; ///< red, green, blue, alpha
    std::vector<stColor> m_vecColors;
    std::size_t m_uPixels = 0; ///< where they begin
};

bool CBmpReader::ReadCoreHead() {
    m_uWidth = Number(18, 2);
    m_uHeight = Number(20, 2);
    m_uBits = Number(24, 2);
    return true;
}

bool CBmpReader::ReadInfoHead(u32 uHead) {
    if (uHead < c_uInfoHead || uHead > 1024 || ByteCount() < c_uFileHead + c_uInfoHead) return false;
    m_uWidth = Number(18, 4);
    const u32 uHeight = Number(22, 4);
    m_bTopDown = uHeight >> 31;
    m_uHeight = m_bTopDown ? 0 - uHeight : uHeight;
    m_uBits = Number(28, 2);
    m_uPacking = Number(30, 4);
    m_uColors = Number(46, 4);
    return true;
}

bool CBmpReader::IsKnown() const {
    switch (m_uPacking) {
    case Plain:
        return m_uBits == 1 || m_uBits == 4 || m_uBits == 8 || m_uBits == 16 || m_uBits == 24 ||
               m_uBits == 32;
    case Rle8:
        return m_uBits == 8 && !m_bTopDown;
    case Rle4:
        return m_uBits == 4 && !m_bTopDown;
    case Masks:
    case AlphaMasks:
        return m_uBits == 16 || m_uBits == 32;
    default:
        return false;
    }
}

void CBmpReader::ReadMasks(u32 uHead) {
    static constexpr u32 auShort[] = {0x7C00, 0x03E0, 0x001F, 0}, auLong[] = {0xFF0000, 0xFF00, 0xFF, 0};
    const bool bOwn = m_uPacking == Masks || m_uPacking == AlphaMasks;
    for (u32 i = 0; i < 4; ++i) {
        m_astMask[i].m_uBits = m_uBits == 16 ? auShort[i] : auLong[i];
        if (!bOwn) continue;
        // The fourth stands in longer headers, or behind the others where its packing says so.
        const bool bStored = i < 3 || m_uPacking == AlphaMasks || uHead >= 56;
        m_astMask[i].m_uBits = bStored ? Number(c_uFileHead + c_uInfoHead + i * 4, 4) : 0;
    }
}

bool CBmpReader::ReadTables(u32 uHead) {
    if (m_uBits > 8) {
        ReadMasks(uHead);
        return true;
    }
    const u32 uEntry = uHead == c_uCoreHead ? 3 : 4, uMost = 1u << m_uBits;
    const u32 uCount = m_uColors && m_uColors < uMost ? m_uColors : uMost;
    for (u32 i = 0; i < uCount; ++i) {
        const std::size_t uAt = c_uFileHead + uHead + static_cast<std::size_t>(i) * uEntry;
        stColor st;
        for (u32 c = 0; c < 3; ++c) st.m_au8[c] = static_cast<u8>(Number(uAt + 2 - c, 1));
        m_vecColors.push_back(st);
    }
    return true;
}

bool CBmpReader::HasPixels() {
    m_uPixels = Number(10, 4);
    if (m_uPixels >= ByteCount()) return false;
    return m_uPacking == Rle8 || m_uPacking == Rle4 || RowBytes() <= (ByteCount() - m_uPixels) / m_uHeight;
}

void CBmpReader::CopyRow(u32 y, u8* pOut) const {
    const std::size_t uRow = m_uPixels + y * RowBytes();
    for (u32 x = 0; x < m_uWidth; ++x, pOut += 4) {
        const std::size_t uBit = static_cast<std::size_t>(x) * m_uBits;
        if (m_uBits <= 8) {
            const u32 uByte = Bytes()[uRow + uBit / 8];
            WriteColor(uByte >> (8 - m_uBits - uBit % 8) & ((1u << m_uBits) - 1), pOut);
            continue;
        }
        const u32 uPixel = Number(uRow + uBit / 8, m_uBits / 8);
        for (u32 c = 0; c < 3; ++c) pOut[c] = m_astMask[c].Channel(uPixel);
        pOut[3] = m_astMask[3].m_uBits ? m_astMask[3].Channel(uPixel) : 255;
    }
}

/// Runs, and rows of single values; a zero byte leads to a row of single values, to the next line of the
/// picture, to the end or to a jump.
class CRuns {
  public:
    CRuns(const u8* pBytes, std::size_t uBytes, bool bNibbles)
        : m_pBytes(pBytes), m_uLeft(uBytes), m_bNibbles(bNibbles) {}

    /// Calls fnPut(x, y, index) for each pixel. False if it ends early or leaves the picture.
    template <typename Put> bool Unpack(u32 uWidth, u32 uHeight, Put fnPut) {
        while (m_y < uHeight) {
            const u32 uCount = Next(), uValue = Next();
            if (m_bEnded) return false;
            if (uCount == 0 && uValue == 1) return true;
            if (uCount == 0 && uValue < 3)
                Move(uValue);
            else if (!(uCount ? Run(uCount, uValue, uWidth, fnPut) : Row(uValue, uWidth, fnPut)))
                return false;
        }
        return true;
    }

  private:
    u32 Next() {
        m_bEnded = m_bEnded || m_uLeft == 0;
        if (m_bEnded) return 0;
        --m_uLeft;
        return *m_pBytes++;
    }
    void Move(u32 uValue) {
        if (uValue == 2) {
            m_x += Next();
            m_y += Next();
        } else {
            m_x = 0;
            ++m_y;
        }
    }
    u32 Index(u32 uByte, u32 i) const { return !m_bNibbles ? uByte : i % 2 ? uByte & 15 : uByte >> 4; }
    template <typename Put> bool Run(u32 uCount, u32 uByte, u32 uWidth, Put fnPut) {
        for (u32 i = 0; i < uCount && m_x < uWidth; ++i) fnPut(m_x++, m_y, Index(uByte, i));
        return true;
    }
    template <typename Put> bool Row(u32 uCount, u32 uWidth, Put fnPut) {
        const u32 uBytes = m_bNibbles ? (uCount + 1) / 2 : uCount;
        u32 uByte = 0;
        for (u32 i = 0; i < uCount; ++i) {
            if (!m_bNibbles || i % 2 == 0) uByte = Next();
            if (m_x < uWidth) fnPut(m_x++, m_y, Index(uByte, i));
        }
        if (uBytes % 2) Next();
        return !m_bEnded;
    }

    const u8* m_pBytes;
    std::size_t m_uLeft;
    bool m_bNibbles, m_bEnded = false;
    u32 m_x = 0, m_y = 0;
};

/// Pixels that no run reaches have the first colour.
bool CBmpReader::CopyPacked(u8* pPixels, std::size_t uStride) const {
    for (u32 y = 0; y < m_uHeight; ++y)
        for (u32 x = 0; x < m_uWidth; ++x) WriteColor(0, pPixels + y * uStride + x * 4ul);
    CRuns runs(Bytes() + m_uPixels, ByteCount() - m_uPixels, m_uPacking == Rle4);
    return runs.Unpack(m_uWidth, m_uHeight, [&](u32 x, u32 y, u32 uIndex) {
        WriteColor(uIndex, pPixels + RowOf(y) * uStride + x * 4ul);
    });
}

} // namespace

Reader MakeBmpReader(std::string strFile) { return std::make_unique<CBmpReader>(std::move(strFile)); }

} // namespace platform::image
