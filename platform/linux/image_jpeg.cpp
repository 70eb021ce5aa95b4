#include "platform/linux/image_reader.h"

#include <csetjmp>
#include <cstdio>
#include <vector>

#include <jerror.h>
#include <jpeglib.h>

namespace platform::image {
namespace {

/// A small file may name thousands of passes over a large picture.
constexpr int c_iMaxScans = 100;

/// Everything that is alive while the library may leave by longjmp. Plain data; the library's object first
/// in each part, as its callbacks get pointers to those.
struct stJpeg {
    jpeg_decompress_struct m_stDecoder;
    jpeg_error_mgr m_stErrors;
    jpeg_progress_mgr m_stProgress;
    std::jmp_buf m_stBack;
};

void Leave(j_common_ptr pCommon) { std::longjmp(static_cast<stJpeg*>(pCommon->client_data)->m_stBack, 1); }

/// Damage inside is passed over; a file that ends early is none.
void Note(j_common_ptr pCommon, int iLevel) {
    if (iLevel < 0 && pCommon->err->msg_code == JWRN_JPEG_EOF) Leave(pCommon);
}

void Watch(j_common_ptr pCommon) {
    if (pCommon->is_decompressor &&
        reinterpret_cast<j_decompress_ptr>(pCommon)->input_scan_number > c_iMaxScans)
        Leave(pCommon);
}

void SetCallbacks(stJpeg& st) {
    st.m_stDecoder.err = jpeg_std_error(&st.m_stErrors);
    st.m_stErrors.error_exit = &Leave;
    st.m_stErrors.emit_message = &Note;
    st.m_stErrors.output_message = [](j_common_ptr) {};
    st.m_stDecoder.client_data = &st;
}

/// False if the head is damaged. jpeg_destroy_decompress() follows in any case.
bool ReadHead(stJpeg& st, const u8* pBytes, std::size_t uBytes) {
    SetCallbacks(st);
    if (setjmp(st.m_stBack)) return false;
    jpeg_create_decompress(&st.m_stDecoder);
    st.m_stProgress.progress_monitor = &Watch;
    st.m_stDecoder.progress = &st.m_stProgress;
    jpeg_mem_src(&st.m_stDecoder, pBytes, uBytes);
    return jpeg_read_header(&st.m_stDecoder, TRUE) == JPEG_HEADER_OK;
}

/// Four inks have to be turned into light by us.
bool HasInks(const jpeg_decompress_struct& st) {
    return st.jpeg_color_space == JCS_CMYK || st.jpeg_color_space == JCS_YCCK;
}

bool ReadRows(stJpeg& st, u8* pPixels, std::size_t uStride) {
    if (setjmp(st.m_stBack)) return false;
    jpeg_decompress_struct& stDecoder = st.m_stDecoder;
    stDecoder.out_color_space = HasInks(stDecoder) ? JCS_CMYK : JCS_EXT_RGBA;
    jpeg_start_decompress(&stDecoder);
    while (stDecoder.output_scanline < stDecoder.output_height) {
        JSAMPROW pRow = pPixels + stDecoder.output_scanline * uStride;
        if (jpeg_read_scanlines(&stDecoder, &pRow, 1) != 1) return false;
    }
    return true;
}

/// Programs that write the Adobe mark write inks inverted.
void InksToLight(u8* pPixel, bool bInverted) {
    const u32 uFlip = bInverted ? 0 : 255;
    const u32 uBlack = pPixel[3] ^ uFlip;
    for (u32 i = 0; i < 3; ++i) pPixel[i] = static_cast<u8>((pPixel[i] ^ uFlip) * uBlack / 255);
    pPixel[3] = 255;
}

class CJpegReader : public CImageReader {
  public:
    using CImageReader::CImageReader;

    bool Open() override {
        stJpeg st{};
        const bool bRead = ReadHead(st, Bytes(), ByteCount());
        m_stFrame.m_uWidth = st.m_stDecoder.image_width;
        m_stFrame.m_uHeight = st.m_stDecoder.image_height;
        m_stFrame.m_uFormat = g_uImageRGBA8;
        jpeg_destroy_decompress(&st.m_stDecoder);
        return bRead && ImageSizeAllowed(m_stFrame.m_uWidth, m_stFrame.m_uHeight);
    }
    bool DescribeFrame(u32, stImageFrame& stOut) override {
        stOut = m_stFrame;
        return true;
    }
    /// The turn that a camera notes is left alone, as the other platform leaves it.
    bool CopyFrame(u32, u8* pPixels, std::size_t uStride) override {
        stJpeg st{};
        const bool bRead = ReadHead(st, Bytes(), ByteCount()) && ReadRows(st, pPixels, uStride);
        const bool bInks = HasInks(st.m_stDecoder), bInverted = st.m_stDecoder.saw_Adobe_marker;
        jpeg_destroy_decompress(&st.m_stDecoder);
        for (u32 y = 0; bRead && bInks && y < m_stFrame.m_uHeight; ++y)
            for (u32 x = 0; x < m_stFrame.m_uWidth; ++x)
                InksToLight(pPixels + y * uStride + x * 4, bInverted);
        return bRead;
    }

  private:
    stImageFrame m_stFrame;
};

} // namespace

Reader MakeJpegReader(std::string strFile) { return std::make_unique<CJpegReader>(std::move(strFile)); }

} // namespace platform::image
