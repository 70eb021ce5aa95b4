#include "platform/linux/image_heif.h"

#include <cstddef>

namespace platform::image {
namespace {

constexpr int c_iColorRgb = 1, c_iChromaRgb = 10, c_iChromaRgba = 11, c_iChannelInterleaved = 10;
constexpr int c_iCodecHevc = 1, c_iDepth = 8, c_iQuality = 90, c_iWriterVersion = 1, c_iCannotWrite = 5;

struct stHeifWriter {
    int m_iVersion;
    stHeifError (*m_fnWrite)(void*, const void*, std::size_t, void*);
};

struct stHeifEncoding {
    int (*m_fnHasEncoder)(int);
    void* (*m_fnContextAlloc)();
    void (*m_fnContextFree)(void*);
    stHeifError (*m_fnEncoder)(void*, int, void**);
    stHeifError (*m_fnQuality)(void*, int);
    void (*m_fnEncoderRelease)(void*);
    stHeifError (*m_fnImageCreate)(int, int, int, int, void**);
    stHeifError (*m_fnAddPlane)(void*, int, int, int, int);
    u8* (*m_fnPlane)(void*, int, int*);
    void (*m_fnImageRelease)(const void*);
    stHeifError (*m_fnEncode)(void*, const void*, void*, const void*, void**);
    stHeifError (*m_fnWrite)(void*, stHeifWriter*, void*);
};

bool FindAll(stHeifEncoding& st) {
    return FindInHeif("heif_have_encoder_for_format", &st.m_fnHasEncoder) &&
           FindInHeif("heif_context_alloc", &st.m_fnContextAlloc) &&
           FindInHeif("heif_context_free", &st.m_fnContextFree) &&
           FindInHeif("heif_context_get_encoder_for_format", &st.m_fnEncoder) &&
           FindInHeif("heif_encoder_set_lossy_quality", &st.m_fnQuality) &&
           FindInHeif("heif_encoder_release", &st.m_fnEncoderRelease) &&
           FindInHeif("heif_image_create", &st.m_fnImageCreate) &&
           FindInHeif("heif_image_add_plane", &st.m_fnAddPlane) &&
           FindInHeif("heif_image_get_plane", &st.m_fnPlane) &&
           FindInHeif("heif_image_release", &st.m_fnImageRelease) &&
           FindInHeif("heif_context_encode_image", &st.m_fnEncode) &&
           FindInHeif("heif_context_write", &st.m_fnWrite);
}

const stHeifEncoding* Library() {
    static stHeifEncoding s_st;
    static const bool s_bFound = FindAll(s_st) && s_st.m_fnHasEncoder(c_iCodecHevc) != 0;
    return s_bFound ? &s_st : nullptr;
}

/// The objects of one file.
struct stEncoding {
    explicit stEncoding(const stHeifEncoding& stLibrary) : m_st(stLibrary) {}
    stEncoding(const stEncoding&) = delete;
    stEncoding& operator=(const stEncoding&) = delete;
    ~stEncoding() {
        if (m_pImage) m_st.m_fnImageRelease(m_pImage);
        if (m_pEncoder) m_st.m_fnEncoderRelease(m_pEncoder);
        if (m_pContext) m_st.m_fnContextFree(m_pContext);
    }
    const stHeifEncoding& m_st;
    void *m_pContext = nullptr, *m_pEncoder = nullptr, *m_pImage = nullptr;
};

const u8* Row(const stImageToSave& st, u32 y) {
    return st.m_pPixels + static_cast<std::size_t>(y) * st.m_uStride;
}

/// An alpha of 255 all over is none: it would be a second picture in the file.
bool HasAlpha(const stImageToSave& st) {
    if (st.m_ePixels != ImagePixels::Bgra32) return false;
    for (u32 y = 0; y < st.m_uHeight; ++y)
        for (u32 x = 0; x < st.m_uWidth; ++x)
            if (Row(st, y)[x * 4 + 3] != 255) return true;
    return false;
}

void CopyRow(const u8* pFrom, u32 uFrom, u8* pTo, u32 uTo, u32 uPixels) {
    for (u32 x = 0; x < uPixels; ++x, pFrom += uFrom, pTo += uTo) {
        pTo[0] = pFrom[2];
        pTo[1] = pFrom[1];
        pTo[2] = pFrom[0];
        if (uTo == 4) pTo[3] = pFrom[3];
    }
}

bool MakeImage(const stImageToSave& st, stEncoding& stOut) {
    const bool bAlpha = HasAlpha(st);
    const int iWidth = static_cast<int>(st.m_uWidth), iHeight = static_cast<int>(st.m_uHeight);
    int iStride = 0;
    if (iWidth < 1 || iHeight < 1 ||
        stOut.m_st
            .m_fnImageCreate(iWidth, iHeight, c_iColorRgb, bAlpha ? c_iChromaRgba : c_iChromaRgb,
                             &stOut.m_pImage)
            .m_iCode ||
        stOut.m_st.m_fnAddPlane(stOut.m_pImage, c_iChannelInterleaved, iWidth, iHeight, c_iDepth).m_iCode)
        return false;
    u8* const pRows = stOut.m_st.m_fnPlane(stOut.m_pImage, c_iChannelInterleaved, &iStride);
    for (u32 y = 0; pRows && y < st.m_uHeight; ++y)
        CopyRow(Row(st, y), st.m_ePixels == ImagePixels::Bgra32 ? 4 : 3,
                pRows + static_cast<std::size_t>(y) * static_cast<u32>(iStride), bAlpha ? 4 : 3, st.m_uWidth);
    return pRows != nullptr;
}

stHeifError WriteTo(void*, const void* pBytes, std::size_t uBytes, void* pFile) {
    const bool bWritten = std::fwrite(pBytes, 1, uBytes, static_cast<std::FILE*>(pFile)) == uBytes;
    return {bWritten ? 0 : c_iCannotWrite, 0, bWritten ? "" : "the file could not be written"};
}

} // namespace

bool HasHeifEncoder() noexcept try { return Library() != nullptr; } catch (...) {
    return false;
}

bool EncodeHeif(const stImageToSave& st, std::FILE* pFile) noexcept try {
    if (!Library()) return false;
    stEncoding stOut(*Library());
    stOut.m_pContext = stOut.m_st.m_fnContextAlloc();
    if (!stOut.m_pContext ||
        stOut.m_st.m_fnEncoder(stOut.m_pContext, c_iCodecHevc, &stOut.m_pEncoder).m_iCode)
        return false;
    stOut.m_st.m_fnQuality(stOut.m_pEncoder, c_iQuality);
    if (!MakeImage(st, stOut) ||
        stOut.m_st.m_fnEncode(stOut.m_pContext, stOut.m_pImage, stOut.m_pEncoder, nullptr, nullptr).m_iCode)
        return false;
    stHeifWriter stWriter{c_iWriterVersion, &WriteTo};
    return stOut.m_st.m_fnWrite(stOut.m_pContext, &stWriter, pFile).m_iCode == 0;
} catch (...) {
    return false;
}

} // namespace platform::image
