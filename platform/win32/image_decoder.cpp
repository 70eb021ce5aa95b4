#include "platform/image_decoder.h"

#include "platform/image_signature.h"
#include "platform/input_file.h"
#include "platform/regular_file.h"
#include "platform/win32/image_com.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

namespace platform {

using com::CRef;

struct ImageFactory {
    com::CCom m_com; ///< first, so that it goes last
    CRef<IWICImagingFactory> m_pFactory;
};

struct ImageDecoder {
    IWICImagingFactory* m_pFactory = nullptr;
    CRef<IWICBitmapDecoder> m_pDecoder;
    u32 m_uFrames = 0;
};

namespace {

/// A PROPVARIANT that is cleared.
class CProperty {
  public:
    CProperty() { PropVariantInit(&m_st); }
    CProperty(const CProperty&) = delete;
    CProperty& operator=(const CProperty&) = delete;
    ~CProperty() { PropVariantClear(&m_st); }
    /// False if there is none of that name.
    bool Read(IWICMetadataQueryReader* pReader, const wchar_t* wzName) {
        return pReader && SUCCEEDED(pReader->GetMetadataByName(wzName, &m_st));
    }
    PROPVARIANT m_st;
};

u32 NumberOf(const PROPVARIANT& st) {
    if (st.vt == VT_UI1) return st.bVal;
    return st.vt == VT_UI2 ? st.uiVal : st.boolVal != VARIANT_FALSE;
}

stImageValue ReadValue(IWICMetadataQueryReader* pReader, const wchar_t* wzName, VARTYPE eType) {
    CProperty property;
    if (!property.Read(pReader, wzName) || property.m_st.vt != eType) return {};
    return {true, NumberOf(property.m_st)};
}

stImageBytes ReadBytes(IWICMetadataQueryReader* pReader, const wchar_t* wzName) {
    CProperty property;
    stImageBytes st;
    if (!property.Read(pReader, wzName)) return st;
    st.m_bPresent = true;
    st.m_bReadable = property.m_st.vt == (VT_UI1 | VT_VECTOR);
    if (!st.m_bReadable) return st;
    st.m_uBytes = property.m_st.caub.cElems;
    for (u32 i = 0; i < std::min<u32>(st.m_uBytes, sizeof st.m_au8); ++i)
        st.m_au8[i] = property.m_st.caub.pElems[i];
    return st;
}

ImageDecoder* Refuse(const char** pszReason, const char* szReason) {
    if (pszReason) *pszReason = szReason;
    return nullptr;
}

enum class Head { Fits, Unreadable, TooLarge };

/// Devices and pipes have names too, and some decoders take memory for all pixels when they open a file.
Head LookAtHead(const char16_t* wzPath) {
    constexpr u64 uHead = 1u << 20;
    const InputFile pFile = OpenInput(wzPath);
    if (!pFile || SizeOfFile(pFile.get()) > g_uMaxImageFileBytes) return Head::Unreadable;
    std::string strHead;
    AppendBytes(pFile.get(), uHead, strHead);
    return ImageHeadTooLarge(reinterpret_cast<const u8*>(strHead.data()), strHead.size()) ? Head::TooLarge
                                                                                          : Head::Fits;
}

u32 CodeOf(const WICPixelFormatGUID& st) {
    if (st == GUID_WICPixelFormat32bppRGBA) return g_uImageRGBA8;
    if (st == GUID_WICPixelFormat32bppBGRA) return g_uImageBGRA8;
    return st == GUID_WICPixelFormat8bppAlpha ? g_uImageAlpha8 : 0;
}

/// One frame, and how its pixels are had.
class CFrame {
  public:
    /// False if it can't be read, or has a format that can't be converted.
    bool Open(ImageDecoder& stDecoder, u32 uFrame) {
        WICPixelFormatGUID stFormat;
        if (FAILED(stDecoder.m_pDecoder->GetFrame(uFrame, m_pFrame.Out()))) return false;
        if (FAILED(m_pFrame->GetSize(&m_uWidth, &m_uHeight)) || FAILED(m_pFrame->GetPixelFormat(&stFormat)))
            return false;
        m_uCode = CodeOf(stFormat);
        return m_uWidth && m_uHeight && (m_uCode || Convert(stDecoder, stFormat));
    }
    bool CopyPixels(u32 uWidth, u32 uHeight, u8* pPixels) const {
        const u32 uStride = uWidth * (m_uCode == g_uImageAlpha8 ? 1 : 4);
        IWICBitmapSource* const pSource =
            m_pConverter ? static_cast<IWICBitmapSource*>(m_pConverter.Get()) : m_pFrame.Get();
        return SUCCEEDED(pSource->CopyPixels(nullptr, uStride, uStride * uHeight, pPixels));
    }

    CRef<IWICBitmapFrameDecode> m_pFrame;
    UINT m_uWidth = 0, m_uHeight = 0;
    u32 m_uCode = 0;

  private:
    bool Convert(ImageDecoder& stDecoder, const WICPixelFormatGUID& stFormat) {
        BOOL bCan = FALSE;
        m_uCode = g_uImageRGBA8;
        return SUCCEEDED(stDecoder.m_pFactory->CreateFormatConverter(m_pConverter.Out())) &&
               SUCCEEDED(m_pConverter->CanConvert(stFormat, GUID_WICPixelFormat32bppRGBA, &bCan)) && bCan &&
               SUCCEEDED(m_pConverter->Initialize(m_pFrame.Get(), GUID_WICPixelFormat32bppRGBA,
                                                  WICBitmapDitherTypeNone, nullptr, 0.0,
                                                  WICBitmapPaletteTypeCustom));
    }

    CRef<IWICFormatConverter> m_pConverter;
};

void ReadPalette(ImageDecoder& stDecoder, stImageFile& st) {
    CRef<IWICPalette> pPalette;
    UINT uColors = 0;
    WICColor auColors[256] = {};
    if (FAILED(stDecoder.m_pFactory->CreatePalette(pPalette.Out())) ||
        FAILED(stDecoder.m_pDecoder->CopyPalette(pPalette.Get())) ||
        FAILED(pPalette->GetColors(256, auColors, &uColors)))
        return;
    st.m_uPaletteColors = std::min(uColors, 256u);
    std::copy(auColors, auColors + st.m_uPaletteColors, st.m_auPalette);
}

void ReadContainer(ImageDecoder& stDecoder, stImageFile& st) {
    CRef<IWICMetadataQueryReader> pReader;
    if (FAILED(stDecoder.m_pDecoder->GetMetadataQueryReader(pReader.Out()))) return;
    st.m_stGlobalTable = ReadValue(pReader.Get(), L"/logscrdesc/GlobalColorTableFlag", VT_BOOL);
    st.m_stBackgroundIndex = ReadValue(pReader.Get(), L"/logscrdesc/BackgroundColorIndex", VT_UI1);
    st.m_stWidth = ReadValue(pReader.Get(), L"/logscrdesc/Width", VT_UI2);
    st.m_stHeight = ReadValue(pReader.Get(), L"/logscrdesc/Height", VT_UI2);
    st.m_stPixelAspect = ReadValue(pReader.Get(), L"/logscrdesc/PixelAspectRatio", VT_UI1);
    st.m_stApplication = ReadBytes(pReader.Get(), L"/appext/application");
    st.m_stLoopData = ReadBytes(pReader.Get(), L"/appext/data");
    if (st.m_stGlobalTable.m_uValue) ReadPalette(stDecoder, st);
}

void ReadFrameData(IWICBitmapFrameDecode* pFrame, stImageFrame& st) {
    CRef<IWICMetadataQueryReader> pReader;
    if (FAILED(pFrame->GetMetadataQueryReader(pReader.Out()))) return;
    st.m_stLeft = ReadValue(pReader.Get(), L"/imgdesc/Left", VT_UI2);
    st.m_stTop = ReadValue(pReader.Get(), L"/imgdesc/Top", VT_UI2);
    st.m_stPlaceWidth = ReadValue(pReader.Get(), L"/imgdesc/Width", VT_UI2);
    st.m_stPlaceHeight = ReadValue(pReader.Get(), L"/imgdesc/Height", VT_UI2);
    st.m_stDelay = ReadValue(pReader.Get(), L"/grctlext/Delay", VT_UI2);
    st.m_stDisposal = ReadValue(pReader.Get(), L"/grctlext/Disposal", VT_UI1);
}

} // namespace

ImageFactory* CreateImageFactory() noexcept {
    auto* const pFactory = new (std::nothrow) ImageFactory;
    if (pFactory && SUCCEEDED(com::MakeFactory(pFactory->m_pFactory))) return pFactory;
    delete pFactory;
    return nullptr;
}

void DestroyImageFactory(ImageFactory* pFactory) noexcept { delete pFactory; }

ImageDecoder* OpenImage(ImageFactory* pFactory, const char16_t* wzPath, const char** pszReason) noexcept {
    try {
        if (!pFactory || !wzPath) return Refuse(pszReason, "no imaging component");
        const Head eHead = LookAtHead(wzPath);
        if (eHead == Head::Unreadable)
            return Refuse(pszReason, "no such file, or one that can't be read or is too large");
        if (eHead == Head::TooLarge) return Refuse(pszReason, "too many pixels");
        auto* const pDecoder = new ImageDecoder;
        pDecoder->m_pFactory = pFactory->m_pFactory.Get();
        UINT uFrames = 0;
        if (SUCCEEDED(pDecoder->m_pFactory->CreateDecoderFromFilename(
                reinterpret_cast<const wchar_t*>(wzPath), nullptr, GENERIC_READ,
                WICDecodeMetadataCacheOnDemand, pDecoder->m_pDecoder.Out()))) {
            if (SUCCEEDED(pDecoder->m_pDecoder->GetFrameCount(&uFrames)))
                pDecoder->m_uFrames = std::min<u32>(uFrames, g_uMaxImageFrames);
            return pDecoder;
        }
        delete pDecoder;
        return Refuse(pszReason, "damaged, or of a kind that is not read");
    } catch (...) {
        return Refuse(pszReason, "out of memory");
    }
}

void CloseImage(ImageDecoder* pDecoder) noexcept { delete pDecoder; }

void DescribeImage(ImageDecoder* pDecoder, stImageFile* pOut) noexcept {
    *pOut = {};
    if (!pDecoder) return;
    pOut->m_uFrames = pDecoder->m_uFrames;
    ReadContainer(*pDecoder, *pOut);
}

bool DescribeImageFrame(ImageDecoder* pDecoder, u32 uFrame, stImageFrame* pOut) noexcept {
    CFrame frame;
    *pOut = {};
    if (!pDecoder || !frame.Open(*pDecoder, uFrame)) return false;
    pOut->m_uWidth = frame.m_uWidth;
    pOut->m_uHeight = frame.m_uHeight;
    pOut->m_uFormat = frame.m_uCode;
    ReadFrameData(frame.m_pFrame.Get(), *pOut);
    return true;
}

bool CopyImageFrame(ImageDecoder* pDecoder, u32 uFrame, u32 uWidth, u32 uHeight, u8* pPixels) noexcept {
    CFrame frame;
    if (!pDecoder || !pPixels || !ImageSizeAllowed(uWidth, uHeight) || !frame.Open(*pDecoder, uFrame))
        return false;
    return ImageSizeAllowed(frame.m_uWidth, frame.m_uHeight) && frame.m_uWidth <= uWidth &&
           frame.m_uHeight <= uHeight && frame.CopyPixels(uWidth, uHeight, pPixels);
}

} // namespace platform
