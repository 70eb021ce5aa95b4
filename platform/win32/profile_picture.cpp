#include "platform/profile_picture.h"
#include "platform/win32/tool.h"
#include <wincodec.h>

namespace platform::tool {
namespace {

/// A reference to an object of the system.
template <class T> class Reference {
  public:
    Reference() = default;
    ~Reference() {
        if (m_p) m_p->Release();
    }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;
    T* Get() const { return m_p; }
    T** Out() { return &m_p; }
    T* operator->() const { return m_p; }

  private:
    T* m_p = nullptr;
};

using Factory = Reference<IWICImagingFactory>;

/// First failure of a row of calls; later ones are not made.
class Steps {
  public:
    template <class Call> Steps& operator()(Call call) {
        if (SUCCEEDED(m_hResult)) m_hResult = call();
        return *this;
    }
    bool AreDone() const { return SUCCEEDED(m_hResult); }
    std::string Why() const { return ErrorText(static_cast<DWORD>(m_hResult)); }

  private:
    HRESULT m_hResult = S_OK;
};

HRESULT MakeFactory(Factory& factory) {
    static const HRESULT hStarted = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (FAILED(hStarted)) return hStarted;
    return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                            reinterpret_cast<void**>(factory.Out()));
}

/// Rows of blue, green, red.
std::vector<u8> Rows(const Picture& picture) {
    std::vector<u8> aRows(static_cast<size_t>(picture.uWidth) * picture.uHeight * 3);
    for (size_t u = 0; u < aRows.size() / 3; ++u)
        for (size_t uPart = 0; uPart < 3; ++uPart) aRows[u * 3 + uPart] = picture.aPixels[u * 4 + 2 - uPart];
    return aRows;
}

std::string WriteFile(const std::wstring& wzPath, const Picture& picture) {
    Factory factory;
    Reference<IWICStream> stream;
    Reference<IWICBitmapEncoder> encoder;
    Reference<IWICBitmapFrameEncode> frame;
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    std::vector<u8> aRows = Rows(picture);
    Steps steps;
    steps([&] { return MakeFactory(factory); })([&] { return factory->CreateStream(stream.Out()); })([&] {
        return stream->InitializeFromFilename(wzPath.c_str(), GENERIC_WRITE);
    })([&] { return factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.Out()); })([&] {
        return encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache);
    })([&] { return encoder->CreateNewFrame(frame.Out(), nullptr); })([&] {
        return frame->Initialize(nullptr);
    })([&] { return frame->SetSize(picture.uWidth, picture.uHeight); })(
        [&] { return frame->SetPixelFormat(&format); })([&] {
        return frame->WritePixels(picture.uHeight, picture.uWidth * 3, static_cast<UINT>(aRows.size()),
                                  aRows.data());
    })([&] { return frame->Commit(); })([&] { return encoder->Commit(); });
    return steps.AreDone() ? std::string() : steps.Why();
}

} // namespace

Result ReadPicture(const std::string& strPath, Picture& picture) {
    Factory factory;
    Reference<IWICBitmapDecoder> decoder;
    Reference<IWICBitmapFrameDecode> frame;
    Reference<IWICFormatConverter> converter;
    UINT uWidth = 0, uHeight = 0;
    Steps steps;
    steps([&] { return MakeFactory(factory); })([&] {
        return factory->CreateDecoderFromFilename(ToWide(strPath).c_str(), nullptr, GENERIC_READ,
                                                  WICDecodeMetadataCacheOnDemand, decoder.Out());
    })([&] { return decoder->GetFrame(0, frame.Out()); })([&] { return frame->GetSize(&uWidth, &uHeight); })(
        [&] { return uWidth > g_uPictureSideMost || uHeight > g_uPictureSideMost ? E_OUTOFMEMORY : S_OK; })(
        [&] { return factory->CreateFormatConverter(converter.Out()); })([&] {
        return converter->Initialize(frame.Get(), GUID_WICPixelFormat32bppRGBA, WICBitmapDitherTypeNone,
                                     nullptr, 0.0, WICBitmapPaletteTypeCustom);
    })([&] {
        picture = Picture(uWidth, uHeight);
        return converter->CopyPixels(nullptr, uWidth * 4, static_cast<UINT>(picture.aPixels.size()),
                                     picture.aPixels.data());
    });
    return steps.AreDone() ? Result{} : Result::Fail("cannot read " + strPath + ": " + steps.Why());
}

Result WritePicture(const std::string& strPath, const Picture& picture) {
    const std::wstring wzPath = ToWide(strPath), wzNew = wzPath + L".new";
    std::string strWhy = WriteFile(wzNew, picture);
    if (strWhy.empty() && !MoveFileExW(wzNew.c_str(), wzPath.c_str(), MOVEFILE_REPLACE_EXISTING))
        strWhy = ErrorText(GetLastError());
    if (strWhy.empty()) return {};
    DeleteFileW(wzNew.c_str());
    return Result::Fail("cannot write " + strPath + ": " + strWhy);
}

} // namespace platform::tool
