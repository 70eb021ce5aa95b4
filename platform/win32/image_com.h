#pragma once
// What decoding and encoding by the Windows Imaging Component share. Header only.
#include "platform/win32/windows_api.h"

#include <objbase.h>
#include <wincodec.h>

#include <utility>

namespace platform::com {

/// Holder of one reference to a COM object.
template <typename Interface> class CRef {
  public:
    CRef() = default;
    CRef(const CRef&) = delete;
    CRef& operator=(const CRef&) = delete;
    CRef(CRef&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
    ~CRef() { Clear(); }

    void Clear() {
        if (m_p) std::exchange(m_p, nullptr)->Release();
    }
    /// For a call that gives an object out; a former one is let go.
    Interface** Out() {
        Clear();
        return &m_p;
    }
    Interface* Get() const { return m_p; }
    Interface* operator->() const { return m_p; }
    explicit operator bool() const { return m_p != nullptr; }

  private:
    Interface* m_p = nullptr;
};

/// COM on this thread for as long as the object lives. A thread that has it in another way keeps that; its
/// count is then not ours to take back.
class CCom {
  public:
    CCom() : m_iResult(CoInitialize(nullptr)) {}
    CCom(const CCom&) = delete;
    CCom& operator=(const CCom&) = delete;
    ~CCom() {
        if (m_iResult == S_OK || m_iResult == S_FALSE) CoUninitialize();
    }

  private:
    HRESULT m_iResult;
};

inline HRESULT MakeFactory(CRef<IWICImagingFactory>& factory) {
    return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                            reinterpret_cast<void**>(factory.Out()));
}

} // namespace platform::com
