#pragma once
// Off-screen GL contexts for tests: EGL without a window system, a pbuffer as framebuffer 0. Linux only.
#include "platform/types.h"
#include <vector>

namespace platform::headless {

struct EglOptions {
    u32 m_uWidth = 640; ///< size of framebuffer 0 in pixels
    u32 m_uHeight = 480;
    i32 m_iMajor = 3; ///< asked-for version; the driver may give a newer compatible one
    i32 m_iMinor = 2;
    bool m_bCore = true; ///< core profile, else compatibility
    bool m_bForwardCompatible = false;
    bool m_bDebug = false;
    bool m_bNoError = false; ///< invalid calls have no defined result
    u32 m_uSamples = 0;      ///< of framebuffer 0; 0 is one plain sample a pixel
};

/// One context with one framebuffer. While it is current, platform::CurrentSurface(), CurrentContext() and
/// ClientSize() report it (see UseRealSurface() in test_controls.h).
class EglContext {
  public:
    EglContext() = default;
    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;
    ~EglContext() { Destroy(); }

    /// Makes the context and makes it current. False if the driver offers none such.
    bool Create(const EglOptions& stOptions);
    bool MakeCurrent();
    /// Takes the context off this thread, if it is the current one.
    void MakeNoneCurrent();
    /// Another framebuffer 0 of another size, made current: a new surface handle.
    bool ReplaceSurface(u32 uWidth, u32 uHeight);
    void Destroy();
    /// Presents; a pbuffer keeps its pixels.
    bool SwapBuffers();

    /// Pixels of framebuffer 0: RGBA bytes, top row first. The context's state is left as it was.
    std::vector<u8> ReadPixels() const;
    u32 Width() const { return m_uWidth; }
    u32 Height() const { return m_uHeight; }
    void* Surface() const { return m_hSurface; }
    void* Context() const { return m_hContext; }

  private:
    bool MakeSurface(u32 uWidth, u32 uHeight);

    void* m_hConfig = nullptr;
    void* m_hSurface = nullptr;
    void* m_hContext = nullptr;
    u32 m_uWidth = 0;
    u32 m_uHeight = 0;
};

} // namespace platform::headless
