#include "platform/image_encoder.h"

#include "platform/win32/image_com.h"

#include <atomic>
#include <string>

namespace platform {
namespace {

using com::CRef;

const GUID& ContainerOf(const stImageToSave& st) {
    switch (st.m_eContainer) {
    case ImageContainer::Bmp:
        return GUID_ContainerFormatBmp;
    case ImageContainer::Jpeg:
        return GUID_ContainerFormatJpeg;
    case ImageContainer::Heif:
        return GUID_ContainerFormatHeif;
    default:
        return GUID_ContainerFormatPng;
    }
}

/// What one file is written with. Objects go in the opposite order.
struct stEncoding {
    CRef<IWICImagingFactory> m_pFactory;
    CRef<IWICStream> m_pStream;
    CRef<IWICBitmapEncoder> m_pEncoder;
    CRef<IWICBitmapFrameEncode> m_pFrame;
};

/// An encoder that can't take the format as it is puts another in its place.
bool TakesFormat(IWICBitmapFrameEncode* pFrame, const stImageToSave& st) {
    const GUID stWanted =
        st.m_ePixels == ImagePixels::Bgra32 ? GUID_WICPixelFormat32bppBGRA : GUID_WICPixelFormat24bppBGR;
    GUID stTaken = stWanted;
    return SUCCEEDED(pFrame->SetPixelFormat(&stTaken)) && stTaken == stWanted;
}

const wchar_t* Wide(const std::u16string& wstr) { return reinterpret_cast<const wchar_t*>(wstr.c_str()); }

/// Name of the file while it is written; another one each time, as two pictures of one name may be written
/// at once.
std::u16string Draft(const char16_t* wzPath) {
    static std::atomic<u32> s_uDrafts{0};
    const std::string strMark =
        "." + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++s_uDrafts) + ".part";
    return wzPath + std::u16string(strMark.begin(), strMark.end());
}

i32 OpenTarget(stEncoding& stOut, const std::u16string& wstrPath) {
    if (FAILED(com::MakeFactory(stOut.m_pFactory))) return 1;
    if (FAILED(stOut.m_pFactory->CreateStream(stOut.m_pStream.Out()))) return 2;
    return FAILED(stOut.m_pStream->InitializeFromFilename(Wide(wstrPath), GENERIC_WRITE)) ? 3 : 0;
}

i32 OpenEncoder(stEncoding& stOut, const stImageToSave& st) {
    if (FAILED(stOut.m_pFactory->CreateEncoder(ContainerOf(st), nullptr, stOut.m_pEncoder.Out()))) return 4;
    if (FAILED(stOut.m_pEncoder->Initialize(stOut.m_pStream.Get(), WICBitmapEncoderNoCache))) return 5;
    return FAILED(stOut.m_pEncoder->CreateNewFrame(stOut.m_pFrame.Out(), nullptr)) ? 6 : 0;
}

i32 WriteFrame(stEncoding& stOut, const stImageToSave& st) {
    const u64 uBytes = static_cast<u64>(st.m_uStride) * st.m_uHeight;
    if (FAILED(stOut.m_pFrame->Initialize(nullptr))) return 7;
    if (FAILED(stOut.m_pFrame->SetSize(st.m_uWidth, st.m_uHeight))) return 8;
    if (!TakesFormat(stOut.m_pFrame.Get(), st)) return 9;
    if (uBytes == 0 || uBytes > INT32_MAX ||
        FAILED(stOut.m_pFrame->WritePixels(st.m_uHeight, st.m_uStride, static_cast<UINT>(uBytes),
                                           const_cast<u8*>(st.m_pPixels))))
        return 10;
    if (FAILED(stOut.m_pFrame->Commit())) return 11;
    return FAILED(stOut.m_pEncoder->Commit()) ? 12 : 0;
}

i32 Encode(const stImageToSave& st, const std::u16string& wstrPath) {
    stEncoding stOut;
    i32 iStep = OpenTarget(stOut, wstrPath);
    if (iStep == 0) iStep = OpenEncoder(stOut, st);
    return iStep ? iStep : WriteFrame(stOut, st);
}

bool LayDown(const std::u16string& wstrDraft, const char16_t* wzPath) {
    return MoveFileExW(Wide(wstrDraft), reinterpret_cast<const wchar_t*>(wzPath), MOVEFILE_REPLACE_EXISTING);
}

} // namespace

/// Nobody finds the file under its name before it is whole.
i32 EncodeImage(const stImageToSave& st) noexcept try {
    const com::CCom com;
    const std::u16string wstrDraft = Draft(st.m_wzPath);
    i32 iStep = Encode(st, wstrDraft);
    if (iStep == 0 && !LayDown(wstrDraft, st.m_wzPath)) iStep = 12;
    // The third step has made a file already; all that held it open is gone by now.
    if (iStep > 3) DeleteFileW(Wide(wstrDraft));
    return iStep;
} catch (...) { // no memory
    return 2;
}

} // namespace platform
