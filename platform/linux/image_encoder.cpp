#include "platform/image_encoder.h"

#include "platform/linux/image_heif.h"
#include "platform/linux/image_target.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

#include <jpeglib.h>
#include <png.h>

namespace platform {
namespace {

/// Numbers that the other platform's steps have.
enum Step : i32 { Done = 0, Opening = 3, Container = 4, Start = 5, PixelFormat = 9, Pixels = 10, End = 12 };

u32 BytesOf(const stImageToSave& st) { return st.m_ePixels == ImagePixels::Bgra32 ? 4 : 3; }
const u8* Row(const stImageToSave& st, u32 y) {
    return st.m_pPixels + static_cast<std::size_t>(y) * st.m_uStride;
}
bool Write(std::FILE* pFile, const void* pBytes, std::size_t uBytes) {
    return std::fwrite(pBytes, 1, uBytes, pFile) == uBytes;
}

// --- PNG
// ------------------------------------------------------------------------------------------------
void Fail(png_structp pPng, png_const_charp) { png_longjmp(pPng, 1); }
void Ignore(png_structp, png_const_charp) {}
void Flush(png_structp) {}
void Put(png_structp pPng, png_bytep pBytes, png_size_t uBytes) {
    if (!Write(static_cast<std::FILE*>(png_get_io_ptr(pPng)), pBytes, uBytes)) png_error(pPng, "");
}

/// Screenshots are large and somebody waits for them: little packing, quickly done.
constexpr int c_iPngLevel = 3;

/// No object to destroy here: the library may leave by longjmp.
i32 WritePng(const stImageToSave& st, std::FILE* pFile, png_structp pPng, png_infop pInfo) {
    if (setjmp(png_jmpbuf(pPng))) return Pixels;
    png_set_write_fn(pPng, pFile, &Put, &Flush);
    png_set_compression_level(pPng, c_iPngLevel);
    png_set_filter(pPng, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    png_set_IHDR(pPng, pInfo, st.m_uWidth, st.m_uHeight, 8,
                 st.m_ePixels == ImagePixels::Bgra32 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(pPng, pInfo);
    png_set_bgr(pPng);
    for (u32 y = 0; y < st.m_uHeight; ++y) png_write_row(pPng, Row(st, y));
    png_write_end(pPng, pInfo);
    return Done;
}

i32 EncodePng(const stImageToSave& st, std::FILE* pFile) {
    png_structp pPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &Fail, &Ignore);
    png_infop pInfo = pPng ? png_create_info_struct(pPng) : nullptr;
    const i32 iStep = pInfo ? WritePng(st, pFile, pPng, pInfo) : static_cast<i32>(Start);
    png_destroy_write_struct(&pPng, &pInfo);
    return iStep;
}

// --- JPEG
// -----------------------------------------------------------------------------------------------
constexpr int c_iJpegQuality = 90;

struct stJpegOut {
    jpeg_compress_struct m_stEncoder;
    jpeg_error_mgr m_stErrors;
    jpeg_destination_mgr m_stTarget;
    std::jmp_buf m_stBack;
    std::FILE* m_pFile;
    u8 m_au8[4096];
};

stJpegOut& Own(j_common_ptr p) { return *static_cast<stJpegOut*>(p->client_data); }
void Leave(j_common_ptr p) { std::longjmp(Own(p).m_stBack, 1); }

void Begin(j_compress_ptr p) {
    stJpegOut& st = Own(reinterpret_cast<j_common_ptr>(p));
    st.m_stTarget.next_output_byte = st.m_au8;
    st.m_stTarget.free_in_buffer = sizeof st.m_au8;
}

boolean Empty(j_compress_ptr p) {
    stJpegOut& st = Own(reinterpret_cast<j_common_ptr>(p));
    if (!Write(st.m_pFile, st.m_au8, sizeof st.m_au8)) Leave(reinterpret_cast<j_common_ptr>(p));
    Begin(p);
    return TRUE;
}

void Finish(j_compress_ptr p) {
    stJpegOut& st = Own(reinterpret_cast<j_common_ptr>(p));
    if (!Write(st.m_pFile, st.m_au8, sizeof st.m_au8 - st.m_stTarget.free_in_buffer))
        Leave(reinterpret_cast<j_common_ptr>(p));
}

void SetCallbacks(stJpegOut& st) {
    st.m_stEncoder.err = jpeg_std_error(&st.m_stErrors);
    st.m_stErrors.error_exit = &Leave;
    st.m_stErrors.output_message = [](j_common_ptr) {};
    st.m_stEncoder.client_data = &st;
    st.m_stTarget.init_destination = &Begin;
    st.m_stTarget.empty_output_buffer = &Empty;
    st.m_stTarget.term_destination = &Finish;
}

i32 WriteJpeg(const stImageToSave& st, stJpegOut& stOut) {
    if (setjmp(stOut.m_stBack)) return Pixels;
    jpeg_create_compress(&stOut.m_stEncoder);
    stOut.m_stEncoder.dest = &stOut.m_stTarget;
    stOut.m_stEncoder.image_width = st.m_uWidth;
    stOut.m_stEncoder.image_height = st.m_uHeight;
    stOut.m_stEncoder.input_components = static_cast<int>(BytesOf(st));
    stOut.m_stEncoder.in_color_space = st.m_ePixels == ImagePixels::Bgra32 ? JCS_EXT_BGRX : JCS_EXT_BGR;
    jpeg_set_defaults(&stOut.m_stEncoder);
    jpeg_set_quality(&stOut.m_stEncoder, c_iJpegQuality, TRUE);
    jpeg_start_compress(&stOut.m_stEncoder, TRUE);
    for (u32 y = 0; y < st.m_uHeight; ++y) {
        JSAMPROW pRow = const_cast<JSAMPROW>(Row(st, y));
        jpeg_write_scanlines(&stOut.m_stEncoder, &pRow, 1);
    }
    jpeg_finish_compress(&stOut.m_stEncoder);
    return Done;
}

i32 EncodeJpeg(const stImageToSave& st, std::FILE* pFile) {
    const std::unique_ptr<stJpegOut> pOut(new (std::nothrow) stJpegOut{});
    if (!pOut) return Start;
    pOut->m_pFile = pFile;
    SetCallbacks(*pOut);
    const i32 iStep = WriteJpeg(st, *pOut);
    jpeg_destroy_compress(&pOut->m_stEncoder);
    return iStep;
}

// --- BMP
// ------------------------------------------------------------------------------------------------
void PutNumber(u8* p, u32 uValue) {
    for (u32 i = 0; i < 4; ++i) p[i] = static_cast<u8>(uValue >> (8 * i));
}

/// Rows from the bottom, padded to four bytes. The other platform has no pixels of four bytes here either.
i32 EncodeBmp(const stImageToSave& st, std::FILE* pFile) {
    constexpr u32 uHead = 54;
    const u64 uRow = (static_cast<u64>(st.m_uWidth) * 3 + 3) / 4 * 4, uAll = uRow * st.m_uHeight;
    if (st.m_ePixels != ImagePixels::Bgr24) return PixelFormat;
    if (uAll > INT32_MAX) return Pixels;
    u8 au8[uHead] = {'B', 'M'};
    PutNumber(au8 + 2, static_cast<u32>(uAll) + uHead);
    PutNumber(au8 + 10, uHead);
    PutNumber(au8 + 14, 40);
    PutNumber(au8 + 18, st.m_uWidth);
    PutNumber(au8 + 22, st.m_uHeight);
    PutNumber(au8 + 26, 1u | 24u << 16);
    PutNumber(au8 + 34, static_cast<u32>(uAll));
    bool bWritten = Write(pFile, au8, sizeof au8);
    for (u32 y = st.m_uHeight; bWritten && y-- > 0;)
        bWritten =
            Write(pFile, Row(st, y), st.m_uWidth * 3ul) && Write(pFile, "\0\0\0", uRow - st.m_uWidth * 3ul);
    return bWritten ? Done : Pixels;
}

i32 Encode(const stImageToSave& st, std::FILE* pFile) {
    if (st.m_eContainer == ImageContainer::Heif && !image::HasHeifEncoder()) return Container;
    if (!st.m_uWidth || !st.m_uHeight || st.m_uStride / BytesOf(st) < st.m_uWidth) return Pixels;
    if (st.m_eContainer == ImageContainer::Heif) return image::EncodeHeif(st, pFile) ? Done : Pixels;
    if (st.m_eContainer == ImageContainer::Png) return EncodePng(st, pFile);
    return st.m_eContainer == ImageContainer::Jpeg ? EncodeJpeg(st, pFile) : EncodeBmp(st, pFile);
}

} // namespace

i32 EncodeImage(const stImageToSave& st) noexcept {
    image::CImageTarget target;
    if (!target.Open(st.m_wzPath)) return Opening;
    const i32 iStep = Encode(st, target.File());
    if (iStep != Done) return iStep;
    return target.Finish() ? Done : End;
}

} // namespace platform
