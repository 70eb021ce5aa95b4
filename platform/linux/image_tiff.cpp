#include "platform/linux/image_reader.h"

#include <algorithm>
#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <tiffio.h>
#include <vector>

static thread_local std::jmp_buf* g_pTiffBack = nullptr;

/// Stands for the C library's call of a failed assertion in the linked library (cmake/third_party.cmake),
/// which would end the host.
extern "C" [[noreturn]] void g_fnImageAssertFailed(const char*, const char*, unsigned, const char*) {
    if (!g_pTiffBack) std::abort();
    std::longjmp(*g_pTiffBack, 1);
}

namespace platform::image {
namespace {

/// Pages that are looked for in one file: they form a chain, which is gone through from its start.
constexpr u32 c_uMaxPages = 4096;
/// The largest block that the library may take: a frame of 8 bytes a pixel.
constexpr tmsize_t c_iMaxBlock = static_cast<tmsize_t>(g_uMaxImagePixels) * 8;

struct stMemory {
    const u8* m_pBytes;
    u64 m_uBytes, m_uPosition;
};

stMemory& Memory(thandle_t h) { return *static_cast<stMemory*>(h); }

tmsize_t ReadBytes(thandle_t h, void* pOut, tmsize_t iBytes) {
    stMemory& st = Memory(h);
    const u64 uLeft = st.m_uPosition < st.m_uBytes ? st.m_uBytes - st.m_uPosition : 0;
    const u64 uBytes = std::min(uLeft, static_cast<u64>(std::max<tmsize_t>(iBytes, 0)));
    if (uBytes) std::memcpy(pOut, st.m_pBytes + st.m_uPosition, uBytes);
    st.m_uPosition += uBytes;
    return static_cast<tmsize_t>(uBytes);
}

tmsize_t WriteNothing(thandle_t, void*, tmsize_t) { return 0; }

toff_t Seek(thandle_t h, toff_t uOffset, int iFrom) {
    stMemory& st = Memory(h);
    const u64 uBase = iFrom == SEEK_CUR ? st.m_uPosition : iFrom == SEEK_END ? st.m_uBytes : 0;
    return st.m_uPosition = uBase + uOffset;
}

int Close(thandle_t) { return 0; }
toff_t Size(thandle_t h) { return Memory(h).m_uBytes; }

/// The library only reads what is mapped. Without it its tiles that are not packed are refused.
int Map(thandle_t h, void** ppBase, toff_t* puBytes) {
    *ppBase = const_cast<u8*>(Memory(h).m_pBytes);
    *puBytes = Memory(h).m_uBytes;
    return 1;
}
void UnmapNothing(thandle_t, void*, toff_t) {}
int Silent(TIFF*, void*, const char*, const char*, va_list) { return 1; }

/// False also if an assertion of the library fails in the work, which has no object to destroy on that way.
bool Protected(bool (*fnWork)(void*), void* pArgument) {
    std::jmp_buf stBack;
    std::jmp_buf* const pFormer = g_pTiffBack;
    if (setjmp(stBack)) {
        g_pTiffBack = pFormer;
        return false;
    }
    g_pTiffBack = &stBack;
    const bool bDone = fnWork(pArgument);
    g_pTiffBack = pFormer;
    return bDone;
}

struct stAlpha {
    bool m_bAny = false;
    bool m_bMultiplied = false; ///< colours are already multiplied by it
};

/// Asks the library for the samples as they are: it would multiply colours by alpha.
stAlpha TakeAlphaAsItIs(TIFF* pTiff) {
    u16 u16Count = 0, *pKinds = nullptr;
    if (!TIFFGetFieldDefaulted(pTiff, TIFFTAG_EXTRASAMPLES, &u16Count, &pKinds) || !u16Count) return {};
    if (pKinds[0] != EXTRASAMPLE_UNASSALPHA) return {true, pKinds[0] == EXTRASAMPLE_ASSOCALPHA};
    u16 u16Kind = EXTRASAMPLE_ASSOCALPHA;
    if (u16Count == 1) TIFFSetField(pTiff, TIFFTAG_EXTRASAMPLES, 1, &u16Kind);
    return {true, false};
}

void DivideByAlpha(u8* pPixels, std::size_t uCount) {
    for (u8* p = pPixels; p != pPixels + uCount * 4; p += 4)
        for (u32 c = 0; p[3] && c < 3; ++c)
            p[c] = static_cast<u8>(std::min(255u, (p[c] * 255u + p[3] / 2u) / p[3]));
}

struct stPage {
    TIFF* m_pTiff;
    u32 m_uWidth, m_uHeight;
    u8* m_pPixels; ///< rows packed
};

/// In the file's own order of rows and columns; the turn that it notes is left alone.
bool ReadPixels(void* pArgument) {
    const stPage& st = *static_cast<stPage*>(pArgument);
    char szReason[1024];
    TIFFRGBAImage stImage;
    if (!TIFFRGBAImageBegin(&stImage, st.m_pTiff, 1, szReason)) return false;
    stImage.req_orientation = stImage.orientation;
    const bool bRead =
        stImage.width == st.m_uWidth && stImage.height == st.m_uHeight &&
        TIFFRGBAImageGet(&stImage, reinterpret_cast<u32*>(st.m_pPixels), st.m_uWidth, st.m_uHeight);
    TIFFRGBAImageEnd(&stImage);
    return bRead;
}

struct stOpen {
    stMemory* m_pMemory;
    TIFF* m_pTiff;
    u32 m_uPages;
};

bool OpenFile(void* pArgument) {
    stOpen& st = *static_cast<stOpen*>(pArgument);
    TIFFOpenOptions* const pOptions = TIFFOpenOptionsAlloc();
    if (!pOptions) return false;
    TIFFOpenOptionsSetMaxSingleMemAlloc(pOptions, c_iMaxBlock);
    TIFFOpenOptionsSetErrorHandlerExtR(pOptions, &Silent, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(pOptions, &Silent, nullptr);
    // O: a page's list of strips only when its pixels are read.
    st.m_pTiff = TIFFClientOpenExt("", "rO", st.m_pMemory, &ReadBytes, &WriteNothing, &Seek, &Close, &Size,
                                   &Map, &UnmapNothing, pOptions);
    TIFFOpenOptionsFree(pOptions);
    if (!st.m_pTiff) return false;
    st.m_uPages = std::min<u32>(TIFFNumberOfDirectories(st.m_pTiff), c_uMaxPages);
    return TIFFSetDirectory(st.m_pTiff, 0) != 0;
}

struct stTurn {
    TIFF* m_pTiff;
    u32 m_uPage, m_uNext;
};

bool TurnTo(void* pArgument) {
    const stTurn& st = *static_cast<stTurn*>(pArgument);
    if (st.m_uPage == st.m_uNext) return TIFFReadDirectory(st.m_pTiff) != 0;
    return TIFFSetDirectory(st.m_pTiff, static_cast<tdir_t>(st.m_uPage)) != 0;
}

bool MeasurePage(void* pArgument) {
    stPage& st = *static_cast<stPage*>(pArgument);
    char szReason[1024];
    return TIFFGetField(st.m_pTiff, TIFFTAG_IMAGEWIDTH, &st.m_uWidth) &&
           TIFFGetField(st.m_pTiff, TIFFTAG_IMAGELENGTH, &st.m_uHeight) &&
           TIFFRGBAImageOK(st.m_pTiff, szReason);
}

class CTiffReader : public CImageReader {
  public:
    explicit CTiffReader(std::string strFile)
        : CImageReader(std::move(strFile)), m_stMemory{Bytes(), ByteCount(), 0} {}
    ~CTiffReader() override {
        // What an assertion left half done is better leaked than freed.
        if (m_pTiff) Protected([](void* p) { return TIFFClose(static_cast<TIFF*>(p)), true; }, m_pTiff);
    }

    bool Open() override {
        stOpen st{&m_stMemory, nullptr, 0};
        const bool bOpened = Protected(&OpenFile, &st);
        m_pTiff = st.m_pTiff;
        m_uPages = st.m_uPages;
        return bOpened && m_uPages;
    }
    void Describe(stImageFile& st) override { st.m_uFrames = m_uPages; }
    bool DescribeFrame(u32 uFrame, stImageFrame& st) override {
        stPage stMeasured{m_pTiff, 0, 0, nullptr};
        if (!GoTo(uFrame) || !Protected(&MeasurePage, &stMeasured)) return false;
        st.m_uWidth = stMeasured.m_uWidth;
        st.m_uHeight = stMeasured.m_uHeight;
        st.m_uFormat = g_uImageRGBA8;
        return st.m_uWidth && st.m_uHeight;
    }
    bool CopyFrame(u32 uFrame, u8* pPixels, std::size_t uStride) override;

  private:
    bool GoTo(u32 uPage) {
        if (uPage == m_uPage) return true;
        stTurn st{m_pTiff, uPage, m_uPage == c_uNowhere ? c_uNowhere : m_uPage + 1};
        m_uPage = Protected(&TurnTo, &st) ? uPage : c_uNowhere;
        return m_uPage == uPage;
    }

    static constexpr u32 c_uNowhere = UINT32_MAX;
    stMemory m_stMemory;
    TIFF* m_pTiff = nullptr;
    u32 m_uPages = 0;
    u32 m_uPage = 0; ///< that the library is at
};

bool CTiffReader::CopyFrame(u32 uFrame, u8* pPixels, std::size_t uStride) {
    stImageFrame stFrame;
    if (!DescribeFrame(uFrame, stFrame)) return false;
    const std::size_t uPixels = static_cast<std::size_t>(stFrame.m_uWidth) * stFrame.m_uHeight;
    // Zeros: the library leaves out strips that the file has no bytes for.
    std::vector<u32> vecPixels(uPixels);
    u8* const pPacked = reinterpret_cast<u8*>(vecPixels.data());
    const stAlpha stKind = TakeAlphaAsItIs(m_pTiff);
    stPage st{m_pTiff, stFrame.m_uWidth, stFrame.m_uHeight, pPacked};
    const bool bRead = Protected(&ReadPixels, &st);
    m_uPage = c_uNowhere; // the change of its alpha ends with the next reading of the page
    if (!bRead) return false;
    if (stKind.m_bMultiplied) DivideByAlpha(pPacked, uPixels);
    for (u32 y = 0; y < stFrame.m_uHeight; ++y)
        std::memcpy(pPixels + y * uStride, vecPixels.data() + static_cast<std::size_t>(y) * stFrame.m_uWidth,
                    stFrame.m_uWidth * 4ul);
    return true;
}

} // namespace

Reader MakeTiffReader(std::string strFile) { return std::make_unique<CTiffReader>(std::move(strFile)); }

} // namespace platform::image
