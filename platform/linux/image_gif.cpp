#include "platform/linux/image_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <gif_lib.h>
#include <vector>

namespace platform::image {
namespace {

struct stGifFrame {
    std::size_t m_uOffset = 0; ///< of its record in the file
    u32 m_uLeft = 0, m_uTop = 0, m_uWidth = 0, m_uHeight = 0;
    bool m_bControl = false; ///< a control block stands ahead of it
    GraphicsControlBlock m_stControl = {0, false, 0, NO_TRANSPARENT_COLOR};
};

struct stPass {
    u32 m_uFirst, m_uStep;
};
constexpr stPass g_astInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}}, g_astPlain[] = {{0, 1}};

using Colors = std::array<std::array<u8, 4>, 256>;

/// The colours of all indexes: black beyond the table, and clear for the one transparent index.
Colors ColorsOf(const ColorMapObject* pTable, int iTransparent) {
    Colors colors;
    for (int i = 0; i < 256; ++i) {
        GifColorType st = {};
        if (pTable && i < pTable->ColorCount) st = pTable->Colors[i];
        colors[static_cast<u32>(i)] = {st.Red, st.Green, st.Blue,
                                       static_cast<u8>(i == iTransparent ? 0 : 255)};
    }
    return colors;
}

void Keep(stImageBytes& st, const u8* pBytes, u32 uBytes) {
    st.m_bPresent = st.m_bReadable = true;
    for (u32 i = 0; i < uBytes && st.m_uBytes + i < sizeof st.m_au8; ++i)
        st.m_au8[st.m_uBytes + i] = pBytes[i];
    st.m_uBytes += uBytes;
}

class CGifReader : public CImageReader {
  public:
    using CImageReader::CImageReader;
    ~CGifReader() override {
        int iError = 0;
        if (m_pGif) DGifCloseFile(m_pGif, &iError);
    }

    /// Goes through all records, so that a file that ends early is told at once; pixels stay packed.
    bool Open() override {
        int iError = 0;
        m_pGif = DGifOpen(this, &Read, &iError);
        return m_pGif && ScanRecords() && !m_vecFrames.empty();
    }
    void Describe(stImageFile& st) override;
    bool DescribeFrame(u32 uFrame, stImageFrame& st) override;
    bool CopyFrame(u32 uFrame, u8* pPixels, std::size_t uStride) override;

  private:
    static int Read(GifFileType* pGif, GifByteType* pOut, int iBytes) {
        auto* const pReader = static_cast<CGifReader*>(pGif->UserData);
        const std::size_t uLeft = pReader->ByteCount() - pReader->m_uPosition;
        const std::size_t uBytes = std::min(uLeft, static_cast<std::size_t>(std::max(iBytes, 0)));
        std::memcpy(pOut, pReader->Bytes() + pReader->m_uPosition, uBytes);
        pReader->m_uPosition += uBytes;
        return static_cast<int>(uBytes);
    }
    bool ScanRecords();
    bool ScanImage(std::size_t uOffset);
    bool SkipPixels();
    bool ScanExtension();
    bool ScanExtensionData(int iKind, GifByteType* pBlock);
    bool CopyRows(const stGifFrame& st, u8* pPixels, std::size_t uStride);

    GifFileType* m_pGif = nullptr;
    std::size_t m_uPosition = 0;
    stGifFrame m_stNext; ///< holds the control block of the next frame
    std::vector<stGifFrame> m_vecFrames;
    stImageBytes m_stApplication, m_stLoopData;
};

bool CGifReader::ScanRecords() {
    for (;;) {
        const std::size_t uOffset = m_uPosition;
        GifRecordType eType = UNDEFINED_RECORD_TYPE;
        if (uOffset == ByteCount()) return true; // without its last byte; the other platform takes it too
        if (DGifGetRecordType(m_pGif, &eType) == GIF_ERROR) return false;
        if (eType == TERMINATE_RECORD_TYPE || m_vecFrames.size() == g_uMaxImageFrames) return true;
        if (!(eType == IMAGE_DESC_RECORD_TYPE ? ScanImage(uOffset) : ScanExtension())) return false;
    }
}

bool CGifReader::ScanImage(std::size_t uOffset) {
    if (DGifGetImageDesc(m_pGif) == GIF_ERROR || !SkipPixels()) return false;
    const GifImageDesc& stImage = m_pGif->Image;
    m_stNext.m_uOffset = uOffset;
    m_stNext.m_uLeft = static_cast<u32>(stImage.Left);
    m_stNext.m_uTop = static_cast<u32>(stImage.Top);
    m_stNext.m_uWidth = static_cast<u32>(stImage.Width);
    m_stNext.m_uHeight = static_cast<u32>(stImage.Height);
    m_vecFrames.push_back(m_stNext);
    m_stNext = {};
    return true;
}

bool CGifReader::SkipPixels() {
    int iCodeSize = 0;
    GifByteType* pBlock = nullptr;
    if (DGifGetCode(m_pGif, &iCodeSize, &pBlock) == GIF_ERROR) return false;
    while (pBlock)
        if (DGifGetCodeNext(m_pGif, &pBlock) == GIF_ERROR) return false;
    return true;
}

bool CGifReader::ScanExtension() {
    int iKind = 0;
    GifByteType* pBlock = nullptr;
    if (DGifGetExtension(m_pGif, &iKind, &pBlock) == GIF_ERROR) return false;
    if (iKind == GRAPHICS_EXT_FUNC_CODE && pBlock)
        m_stNext.m_bControl = DGifExtensionToGCB(pBlock[0], pBlock + 1, &m_stNext.m_stControl) == GIF_OK;
    return ScanExtensionData(iKind, pBlock);
}

/// The first application block counts: a name, then its data with their length bytes. Behind the first frame
/// such blocks belong to frames.
bool CGifReader::ScanExtensionData(int iKind, GifByteType* pBlock) {
    const bool bOurs =
        iKind == APPLICATION_EXT_FUNC_CODE && !m_stApplication.m_bPresent && m_vecFrames.empty() && pBlock;
    if (bOurs) Keep(m_stApplication, pBlock + 1, pBlock[0]);
    while (pBlock) {
        if (DGifGetExtensionNext(m_pGif, &pBlock) == GIF_ERROR) return false;
        if (bOurs && pBlock) Keep(m_stLoopData, pBlock, pBlock[0] + 1u);
    }
    return true;
}

void CGifReader::Describe(stImageFile& st) {
    const ColorMapObject* const pTable = m_pGif->SColorMap;
    st.m_uFrames = static_cast<u32>(m_vecFrames.size());
    st.m_stWidth = {true, static_cast<u32>(m_pGif->SWidth)};
    st.m_stHeight = {true, static_cast<u32>(m_pGif->SHeight)};
    st.m_stPixelAspect = {true, m_pGif->AspectByte};
    st.m_stGlobalTable = {true, pTable != nullptr};
    st.m_stBackgroundIndex = {true, static_cast<u32>(m_pGif->SBackGroundColor)};
    st.m_uPaletteColors = pTable ? static_cast<u32>(std::clamp(pTable->ColorCount, 0, 256)) : 0;
    for (u32 i = 0; i < st.m_uPaletteColors; ++i) {
        const GifColorType& stColor = pTable->Colors[i];
        st.m_auPalette[i] = 0xFF000000u | static_cast<u32>(stColor.Red) << 16 |
                            static_cast<u32>(stColor.Green) << 8 | stColor.Blue;
    }
    st.m_stApplication = m_stApplication;
    st.m_stLoopData = m_stLoopData;
}

bool CGifReader::DescribeFrame(u32 uFrame, stImageFrame& st) {
    const stGifFrame& stFrame = m_vecFrames[uFrame];
    st.m_uWidth = stFrame.m_uWidth;
    st.m_uHeight = stFrame.m_uHeight;
    st.m_uFormat = g_uImageRGBA8;
    st.m_stLeft = {true, stFrame.m_uLeft};
    st.m_stTop = {true, stFrame.m_uTop};
    st.m_stPlaceWidth = {true, stFrame.m_uWidth};
    st.m_stPlaceHeight = {true, stFrame.m_uHeight};
    st.m_stDelay = {stFrame.m_bControl, static_cast<u32>(stFrame.m_stControl.DelayTime)};
    st.m_stDisposal = {stFrame.m_bControl, static_cast<u32>(stFrame.m_stControl.DisposalMode)};
    return st.m_uWidth && st.m_uHeight;
}

/// Straight to the frame's record: the library reads whatever comes next.
bool CGifReader::CopyFrame(u32 uFrame, u8* pPixels, std::size_t uStride) {
    m_uPosition = m_vecFrames[uFrame].m_uOffset;
    GifRecordType eType = UNDEFINED_RECORD_TYPE;
    if (DGifGetRecordType(m_pGif, &eType) == GIF_ERROR || eType != IMAGE_DESC_RECORD_TYPE) return false;
    if (DGifGetImageDesc(m_pGif) == GIF_ERROR) return false;
    return CopyRows(m_vecFrames[uFrame], pPixels, uStride);
}

bool CGifReader::CopyRows(const stGifFrame& st, u8* pPixels, std::size_t uStride) {
    const ColorMapObject* const pTable = m_pGif->Image.ColorMap ? m_pGif->Image.ColorMap : m_pGif->SColorMap;
    const Colors colors =
        ColorsOf(pTable, st.m_bControl ? st.m_stControl.TransparentColor : NO_TRANSPARENT_COLOR);
    std::vector<GifPixelType> vecRow(st.m_uWidth);
    const bool bInterlaced = m_pGif->Image.Interlace;
    const stPass* const pPasses = bInterlaced ? g_astInterlaced : g_astPlain;
    for (u32 uPass = 0; uPass < (bInterlaced ? std::size(g_astInterlaced) : 1); ++uPass)
        for (u32 y = pPasses[uPass].m_uFirst; y < st.m_uHeight; y += pPasses[uPass].m_uStep) {
            if (DGifGetLine(m_pGif, vecRow.data(), static_cast<int>(st.m_uWidth)) == GIF_ERROR) return false;
            u8* const pRow = pPixels + y * uStride;
            for (u32 x = 0; x < st.m_uWidth; ++x) std::memcpy(pRow + x * 4ul, colors[vecRow[x]].data(), 4);
        }
    return true;
}

} // namespace

Reader MakeGifReader(std::string strFile) { return std::make_unique<CGifReader>(std::move(strFile)); }

} // namespace platform::image
