#pragma once
// What runs on the application's render thread at every swap. Flat state, one set per process.
#include "draw/canvas.h"
#include "platform/export.h"
#include "platform/surface.h"
#include "platform/types.h"
#include <atomic>

class CDrawBasic_Base;
class CDrawText_Base;

extern bool g_bInitGL;       ///< the overlay's resources exist
extern bool g_bInitGLEW;     ///< GLEW has been initialised for this context
extern u32 g_iInitFailCount; ///< 5 and above: the pipeline refuses to run
/// Cleared by the one swap that runs the pipeline and set again on its every way out. A swap that comes in
/// between, on another thread or inside the pipeline, goes straight through.
extern std::atomic<bool> g_bPipelineIdle;
extern platform::SurfaceHandle g_hDC;
extern std::atomic<platform::ContextHandle> g_hGLRC; ///< what the resources were built in
extern platform::WindowHandle hFocusWindow;
extern i32 g_iGL_Major, g_iGL_Minor;
extern i32 g_iGL_ContextProfileMask, g_iGL_ContextFlag; ///< logged only
extern u32 g_uCallCount;                                ///< pipeline entries
extern u32 g_uApiCode;                                  ///< 1024: OpenGL; 0: none yet
extern char16_t g_wzApiName[32];    ///< display name of the API, "OpenGL" once resources were asked for
extern bool g_bCheckApiMapping;     ///< the API mapping step is still to be done
extern bool g_bOtherApiOwnsProcess; ///< a Direct3D flavour of the overlay owns this process
extern void* g_hApiMapping;
extern char* g_pApiView;
extern f32 g_fInitSeconds;      ///< how long resource creation took
extern u32 g_uCopyTexture;      ///< GL name of the backdrop texture, made on demand
extern bool g_bCaptureBackdrop; ///< a control needs a copy of the frame behind the overlay
extern CDrawBasic_Base* g_pDrawBasic;
extern CDrawText_Base* g_pDrawText;
extern u8 g_bShotPending; ///< a screenshot was requested
extern u32 g_uCapMode;    ///< 1: taken before the overlay is drawn, 2: after it

/// Code of g_uApiCode for OpenGL.
constexpr u32 g_uApiCodeOpenGL = 1024;
/// From this failure count on the pipeline refuses to run.
constexpr u32 g_uInitFailLimit = 5;
/// Written by the version gate: never try again.
constexpr u32 g_uInitFailForGood = 10;

extern "C" {
/// The detour over the application's swap. Returns what the real swap returned; throws nothing.
ORVIN_EXPORT i32 GL_wglSwapBuffers(void* hdc);
/// Pass-through to the real context deletion; releases nothing.
ORVIN_EXPORT i32 GL_wglDeleteContext(void* hglrc);
}

/// All that GL_wglSwapBuffers does ahead of the real swap.
void g_fnAheadOfSwap(void* hdc) noexcept;
/// The right to run the pipeline, while it lives; taken only where nobody has it. Takes commands, draws,
/// limits and reports only with it.
class CPipelineTurn {
  public:
    CPipelineTurn() noexcept : m_bTaken(g_bPipelineIdle.exchange(false, std::memory_order_acquire)) {}
    ~CPipelineTurn() {
        if (m_bTaken) g_bPipelineIdle.store(true, std::memory_order_release);
    }
    CPipelineTurn(const CPipelineTurn&) = delete;
    CPipelineTurn& operator=(const CPipelineTurn&) = delete;
    explicit operator bool() const noexcept { return m_bTaken; }

  private:
    const bool m_bTaken;
};

/// Steps before drawing, then one drawn frame, for whoever has the pipeline's turn. Throws nothing.
void g_fnTavo_GL_PrewglSwapBuffers(platform::SurfaceHandle hdc) noexcept;
/// One drawn frame in the current context.
void g_fnTavo_GL_Render();
/// Tears everything down; nothing while g_bInitGL is false. GL objects are deleted only where the context
/// that made them is current, and forgotten elsewhere.
void g_fnTavo_GL_Release() noexcept;
/// Unmaps and closes the API mapping (at unhook).
void g_fnCloseApiMapping() noexcept;
/// Gives the claim back and leaves the view mapped, since a thread may be writing through it (at the end of
/// the process).
void g_fnDropApiClaim() noexcept;

/// Takes the screenshot of the current frame, where a taker is installed.
void g_fnTavo_GL_SaveScreenshot();
/// The installed taker; null while there is none.
extern void (*g_fnSaveScreenshotHook)();
