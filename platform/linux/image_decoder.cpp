#include "platform/image_decoder.h"

#include "platform/input_file.h"
#include "platform/linux/font_output.h"
#include "platform/linux/font_stack.h"
#include "platform/linux/image_reader.h"

#include <new>

namespace platform {

struct ImageFactory {};

struct ImageDecoder {
    image::Reader m_pReader;
    u32 m_uFrames = 0;
};

namespace {

using image::Reader;

Reader MakeReader(std::string strFile) {
    switch (ImageKindOf(reinterpret_cast<const u8*>(strFile.data()), strFile.size())) {
    case ImageKind::Png:
        return image::MakePngReader(std::move(strFile));
    case ImageKind::Jpeg:
        return image::MakeJpegReader(std::move(strFile));
    case ImageKind::Gif:
        return image::MakeGifReader(std::move(strFile));
    case ImageKind::Bmp:
        return image::MakeBmpReader(std::move(strFile));
    case ImageKind::Tiff:
        return image::MakeTiffReader(std::move(strFile));
    case ImageKind::Heif:
        return image::MakeHeifReader(std::move(strFile));
    default:
        return nullptr;
    }
}

ImageDecoder* Refuse(const char** pszReason, const char* szReason) {
    if (pszReason) *pszReason = szReason;
    return nullptr;
}

ImageDecoder* Open(std::string strFile, const char** pszReason) {
    if (!OpenFontOutput()) return nullptr;
    if (ImageHeadTooLarge(reinterpret_cast<const u8*>(strFile.data()), strFile.size()))
        return Refuse(pszReason, "too many pixels");
    Reader pReader = MakeReader(std::move(strFile));
    if (!pReader) return Refuse(pszReason, "no decoder for this kind of file");
    if (!pReader->Open()) return Refuse(pszReason, "damaged, or of a kind that is not read");
    stImageFile st;
    pReader->Describe(st);
    return new ImageDecoder{std::move(pReader), st.m_uFrames};
}

/// The libraries take more stack than some threads of hosts have, and nothing of ours may leave by an
/// exception.
template <typename Work> bool Guarded(Work work) noexcept {
    struct stCall {
        Work* m_pWork;
        bool m_bDone;
    } stCall{&work, false};
    host::RunWithStack(
        [](void* p) {
            auto* const pCall = static_cast<decltype(stCall)*>(p);
            try {
                pCall->m_bDone = (*pCall->m_pWork)();
            } catch (...) {
                pCall->m_bDone = false;
            }
        },
        &stCall);
    return stCall.m_bDone;
}

bool CopyInto(image::CImageReader& reader, u32 uFrame, u32 uWidth, u32 uHeight, u8* pPixels) {
    stImageFrame st;
    if (!reader.DescribeFrame(uFrame, st) || !ImageSizeAllowed(st.m_uWidth, st.m_uHeight)) return false;
    if (st.m_uWidth > uWidth || st.m_uHeight > uHeight) return false;
    return reader.CopyFrame(uFrame, pPixels, static_cast<std::size_t>(uWidth) * 4);
}

} // namespace

namespace image {

ImageDecoder* OpenImageBytes(std::string strFile, const char** pszReason) noexcept {
    ImageDecoder* pDecoder = nullptr;
    if (pszReason) *pszReason = "out of memory";
    Guarded([&] { return (pDecoder = Open(std::move(strFile), pszReason)) != nullptr; });
    return pDecoder;
}

} // namespace image

ImageFactory* CreateImageFactory() noexcept { return new (std::nothrow) ImageFactory; }

void DestroyImageFactory(ImageFactory* pFactory) noexcept { delete pFactory; }

ImageDecoder* OpenImage(ImageFactory* pFactory, const char16_t* wzPath, const char** pszReason) noexcept {
    std::string strFile;
    const bool bRead = Guarded([&] {
        const InputFile pFile = pFactory ? OpenInput(wzPath) : nullptr;
        return pFile && ReadWholeFile(pFile, g_uMaxImageFileBytes, strFile);
    });
    if (!bRead) return Refuse(pszReason, "no such file, or one that can't be read or is too large");
    return image::OpenImageBytes(std::move(strFile), pszReason);
}

void CloseImage(ImageDecoder* pDecoder) noexcept { delete pDecoder; }

void DescribeImage(ImageDecoder* pDecoder, stImageFile* pOut) noexcept {
    *pOut = {};
    if (pDecoder) pDecoder->m_pReader->Describe(*pOut);
}

bool DescribeImageFrame(ImageDecoder* pDecoder, u32 uFrame, stImageFrame* pOut) noexcept {
    *pOut = {};
    if (!pDecoder || uFrame >= pDecoder->m_uFrames) return false;
    return Guarded([&] { return pDecoder->m_pReader->DescribeFrame(uFrame, *pOut); });
}

bool CopyImageFrame(ImageDecoder* pDecoder, u32 uFrame, u32 uWidth, u32 uHeight, u8* pPixels) noexcept {
    if (!pDecoder || !pPixels || uFrame >= pDecoder->m_uFrames) return false;
    return Guarded([&] { return CopyInto(*pDecoder->m_pReader, uFrame, uWidth, uHeight, pPixels); });
}

} // namespace platform
