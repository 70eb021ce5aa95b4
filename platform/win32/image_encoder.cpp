#include "platform/image_encoder.h"

#include "platform/win32/image_com.h"

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

i32 OpenTarget(stEncoding& stOut, const stImageToSave& st) {
    if (FAILED(com::MakeFactory(stOut.m_pFactory))) return 1;
    if (FAILED(stOut.m_pFactory->CreateStream(stOut.m_pStream.Out()))) return 2;
    const auto* const wzPath = reinterpret_cast<const wchar_t*>(st.m_wzPath);
    return FAILED(stOut.m_pStream->InitializeFromFilename(wzPath, GENERIC_WRITE)) ? 3 : 0;
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

i32 Encode(const stImageToSave& st) {
    stEncoding stOut;
    i32 iStep = OpenTarget(stOut, st);
    if (iStep == 0) iStep = OpenEncoder(stOut, st);
    return iStep ? iStep : WriteFrame(stOut, st);
}

} // namespace

i32 EncodeImage(const stImageToSave& st) noexcept {
    const com::CCom com;
    const i32 iStep = Encode(st);
    // The third step has made a file already; all that held it open is gone by now.
    if (iStep > 3) DeleteFileW(reinterpret_cast<const wchar_t*>(st.m_wzPath));
    return iStep;
}

} // namespace platform
