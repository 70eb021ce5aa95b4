#pragma once
// What runs on the application's render thread at every swap. Flat state, one set per process.
#include "frame/canvas.h"
#include "platform/export.h"
#include "platform/surface.h"
#include "platform/types.h"

class CDrawBasic_Base;
class CDrawText_Base;

extern bool g_bInitGL;       ///< the overlay's resources exist
extern bool g_bInitGLEW;     ///< GLEW has been initialised for this context
extern u32 g_iInitFailCount; ///< 5 and above: the pipeline refuses to run
extern bool g_bPipelineIdle; ///< re-entry guard: cleared while the pipeline runs, set again on every way out
extern platform::SurfaceHandle g_hDC;
extern platform::ContextHandle g_hGLRC;
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
/// Steps before drawing, then one drawn frame. Throws nothing; g_bPipelineIdle is set again on every way out.
void g_fnTavo_GL_PrewglSwapBuffers(platform::SurfaceHandle hdc) noexcept;
/// One drawn frame in the current context.
void g_fnTavo_GL_Render();
/// Tears everything down; nothing while g_bInitGL is false. GL objects are deleted only where a context is
/// current.
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
