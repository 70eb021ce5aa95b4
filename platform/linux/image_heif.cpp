#include "platform/linux/image_heif.h"
#include "platform/linux/image_reader.h"

#include <cstring>
#include <dlfcn.h>

namespace platform::image {

void* HeifLibrary() noexcept {
    static void* const s_pLibrary = dlopen("libheif.so.1", RTLD_NOW | RTLD_LOCAL);
    return s_pLibrary;
}

bool FindInHeif(const char* szName, void* pFunction) noexcept {
    void* const pFound = HeifLibrary() ? dlsym(HeifLibrary(), szName) : nullptr;
    std::memcpy(pFunction, &pFound, sizeof pFound);
    return pFound != nullptr;
}

namespace {

constexpr int c_iColorRgb = 1, c_iChromaRgba = 11, c_iChannelInterleaved = 10;

struct stHeifLibrary {
    void* (*m_fnContextAlloc)();
    void (*m_fnContextFree)(void*);
    stHeifError (*m_fnRead)(void*, const void*, std::size_t, const void*);
    stHeifError (*m_fnPrimary)(void*, void**);
    void (*m_fnHandleRelease)(const void*);
    int (*m_fnHandleWidth)(const void*);
    int (*m_fnHandleHeight)(const void*);
    stHeifError (*m_fnDecode)(const void*, void**, int, int, const void*);
    void (*m_fnImageRelease)(const void*);
    int (*m_fnImageWidth)(const void*, int);
    int (*m_fnImageHeight)(const void*, int);
    const u8* (*m_fnPlane)(const void*, int, int*);
};

bool FindAll(stHeifLibrary& st) {
    return FindInHeif("heif_context_alloc", &st.m_fnContextAlloc) &&
           FindInHeif("heif_context_free", &st.m_fnContextFree) &&
           FindInHeif("heif_context_read_from_memory_without_copy", &st.m_fnRead) &&
           FindInHeif("heif_context_get_primary_image_handle", &st.m_fnPrimary) &&
           FindInHeif("heif_image_handle_release", &st.m_fnHandleRelease) &&
           FindInHeif("heif_image_handle_get_width", &st.m_fnHandleWidth) &&
           FindInHeif("heif_image_handle_get_height", &st.m_fnHandleHeight) &&
           FindInHeif("heif_decode_image", &st.m_fnDecode) &&
           FindInHeif("heif_image_release", &st.m_fnImageRelease) &&
           FindInHeif("heif_image_get_width", &st.m_fnImageWidth) &&
           FindInHeif("heif_image_get_height", &st.m_fnImageHeight) &&
           FindInHeif("heif_image_get_plane_readonly", &st.m_fnPlane);
}

/// Null where it is not installed.
const stHeifLibrary* Library() {
    static stHeifLibrary s_st;
    static const bool s_bFound = FindAll(s_st);
    return s_bFound ? &s_st : nullptr;
}

class CHeifReader : public CImageReader {
  public:
    CHeifReader(std::string strFile, const stHeifLibrary& stLibrary)
        : CImageReader(std::move(strFile)), m_st(stLibrary) {}
    ~CHeifReader() override {
        if (m_pHandle) m_st.m_fnHandleRelease(m_pHandle);
        if (m_pContext) m_st.m_fnContextFree(m_pContext);
    }

    bool Open() override {
        m_pContext = m_st.m_fnContextAlloc();
        if (!m_pContext || m_st.m_fnRead(m_pContext, Bytes(), ByteCount(), nullptr).m_iCode) return false;
        if (m_st.m_fnPrimary(m_pContext, &m_pHandle).m_iCode || !m_pHandle) return false;
        const int iWidth = m_st.m_fnHandleWidth(m_pHandle), iHeight = m_st.m_fnHandleHeight(m_pHandle);
        if (iWidth < 1 || iHeight < 1) return false;
        m_stFrame.m_uWidth = static_cast<u32>(iWidth);
        m_stFrame.m_uHeight = static_cast<u32>(iHeight);
        m_stFrame.m_uFormat = g_uImageRGBA8;
        return ImageSizeAllowed(m_stFrame.m_uWidth, m_stFrame.m_uHeight);
    }
    bool DescribeFrame(u32, stImageFrame& st) override {
        st = m_stFrame;
        return true;
    }
    bool CopyFrame(u32, u8* pPixels, std::size_t uStride) override {
        void* pImage = nullptr;
        if (m_st.m_fnDecode(m_pHandle, &pImage, c_iColorRgb, c_iChromaRgba, nullptr).m_iCode) return false;
        const bool bCopied = pImage && CopyRows(pImage, pPixels, uStride);
        if (pImage) m_st.m_fnImageRelease(pImage);
        return bCopied;
    }

  private:
    /// The picture may be of another size than the file's head says.
    bool CopyRows(const void* pImage, u8* pPixels, std::size_t uStride) const {
        int iStride = 0;
        const u8* const pRows = m_st.m_fnPlane(pImage, c_iChannelInterleaved, &iStride);
        const int iWidth = m_st.m_fnImageWidth(pImage, c_iChannelInterleaved),
                  iHeight = m_st.m_fnImageHeight(pImage, c_iChannelInterleaved);
        if (!pRows || iStride < 1 || iWidth != static_cast<int>(m_stFrame.m_uWidth) ||
            iHeight != static_cast<int>(m_stFrame.m_uHeight))
            return false;
        for (u32 y = 0; y < m_stFrame.m_uHeight; ++y)
            std::memcpy(pPixels + y * uStride,
                        pRows + static_cast<std::size_t>(y) * static_cast<u32>(iStride),
                        m_stFrame.m_uWidth * 4ul);
        return true;
    }

    const stHeifLibrary& m_st;
    void *m_pContext = nullptr, *m_pHandle = nullptr;
    stImageFrame m_stFrame;
};

} // namespace

Reader MakeHeifReader(std::string strFile) {
    const stHeifLibrary* const pLibrary = Library();
    return pLibrary ? std::make_unique<CHeifReader>(std::move(strFile), *pLibrary) : nullptr;
}

} // namespace platform::image
