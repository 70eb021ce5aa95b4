#include "platform/linux/image_reader.h"

#include <csetjmp>
#include <png.h>
#include <vector>

namespace platform::image {
namespace {

/// Everything that is alive while the library may leave by longjmp. Plain data; Close() frees it.
struct stPng {
    png_structp m_pPng;
    png_infop m_pInfo;
    const u8* m_pBytes;
    std::size_t m_uLeft;
};

void Fail(png_structp pPng, png_const_charp) { png_longjmp(pPng, 1); }
void Ignore(png_structp, png_const_charp) {}

void ReadBytes(png_structp pPng, png_bytep pOut, png_size_t uBytes) {
    auto* const pState = static_cast<stPng*>(png_get_io_ptr(pPng));
    if (uBytes > pState->m_uLeft) png_error(pPng, "ends early");
    std::copy(pState->m_pBytes, pState->m_pBytes + uBytes, pOut);
    pState->m_pBytes += uBytes;
    pState->m_uLeft -= uBytes;
}

/// Only what changes pixels is read: other blocks may unpack to any size.
void SetBounds(png_structp pPng) {
    png_set_user_limits(pPng, g_uMaxImagePixels, g_uMaxImagePixels);
    png_set_chunk_malloc_max(pPng, 1u << 20);
    png_set_chunk_cache_max(pPng, 16);
    static constexpr png_byte aSkipped[] = "iCCP\0tEXt\0zTXt\0iTXt\0sPLT\0eXIf\0hIST";
    png_set_keep_unknown_chunks(pPng, PNG_HANDLE_CHUNK_NEVER, nullptr, 0);
    png_set_keep_unknown_chunks(pPng, PNG_HANDLE_CHUNK_NEVER, aSkipped, sizeof aSkipped / 5);
}

void CloseFile(stPng& st) { png_destroy_read_struct(&st.m_pPng, &st.m_pInfo, nullptr); }

/// False if the head is damaged. CloseFile() follows in any case.
bool ReadHead(stPng& st) {
    st.m_pPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &Fail, &Ignore);
    st.m_pInfo = st.m_pPng ? png_create_info_struct(st.m_pPng) : nullptr;
    if (!st.m_pInfo || setjmp(png_jmpbuf(st.m_pPng))) return false;
    SetBounds(st.m_pPng);
    png_set_read_fn(st.m_pPng, &st, &ReadBytes);
    png_read_info(st.m_pPng, st.m_pInfo);
    return true;
}

/// Pixels with alpha and 8 bits a channel come in the order B, G, R, A, as the other platform has them.
bool IsBgra(const stPng& st) {
    return (png_get_color_type(st.m_pPng, st.m_pInfo) & PNG_COLOR_MASK_ALPHA) != 0 &&
           png_get_bit_depth(st.m_pPng, st.m_pInfo) == 8;
}

/// Four bytes a pixel out of every kind. No gamma and no profile: the bytes of the file are the colour.
void SetTransforms(const stPng& st) {
    png_set_expand(st.m_pPng); // palette, grey below 8 bits, the one transparent colour
    png_set_strip_16(st.m_pPng);
    png_set_gray_to_rgb(st.m_pPng);
    png_set_filler(st.m_pPng, 0xFF, PNG_FILLER_AFTER);
    if (IsBgra(st)) png_set_bgr(st.m_pPng);
    png_set_interlace_handling(st.m_pPng);
    png_read_update_info(st.m_pPng, st.m_pInfo);
}

bool ReadRows(stPng& st, png_bytep* ppRows, std::size_t uRowBytes) {
    if (setjmp(png_jmpbuf(st.m_pPng))) return false;
    SetTransforms(st);
    if (png_get_rowbytes(st.m_pPng, st.m_pInfo) != uRowBytes) return false;
    png_read_image(st.m_pPng, ppRows);
    return true;
}

class CPngReader : public CImageReader {
  public:
    using CImageReader::CImageReader;

    bool Open() override {
        stPng st = Start();
        const bool bRead = ReadHead(st);
        if (bRead) TakeHead(st);
        CloseFile(st);
        return bRead && ImageSizeAllowed(m_stFrame.m_uWidth, m_stFrame.m_uHeight);
    }
    bool DescribeFrame(u32, stImageFrame& stOut) override {
        stOut = m_stFrame;
        return true;
    }
    bool CopyFrame(u32, u8* pPixels, std::size_t uStride) override {
        std::vector<png_bytep> vecRows(m_stFrame.m_uHeight);
        for (std::size_t y = 0; y < vecRows.size(); ++y) vecRows[y] = pPixels + y * uStride;
        stPng st = Start();
        const bool bRead =
            ReadHead(st) && ReadRows(st, vecRows.data(), static_cast<std::size_t>(m_stFrame.m_uWidth) * 4);
        CloseFile(st);
        return bRead;
    }

  private:
    stPng Start() const { return {nullptr, nullptr, Bytes(), ByteCount()}; }
    void TakeHead(const stPng& st) {
        m_stFrame.m_uWidth = png_get_image_width(st.m_pPng, st.m_pInfo);
        m_stFrame.m_uHeight = png_get_image_height(st.m_pPng, st.m_pInfo);
        m_stFrame.m_uFormat = IsBgra(st) ? g_uImageBGRA8 : g_uImageRGBA8;
    }

    stImageFrame m_stFrame;
};

} // namespace

Reader MakePngReader(std::string strFile) { return std::make_unique<CPngReader>(std::move(strFile)); }

} // namespace platform::image
