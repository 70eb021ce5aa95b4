#pragma once
// The guard that key OuterGuard of [HostCare] puts in the place of the state guard. It asks for each state
// that the drawing changes or depends on, sets only those that differ from what is needed, and gives back
// only what it set, so nothing of the program's is lost in any kind of context. No call of it is invalid in
// the profile at hand.
//
// Between begin and end the drawing may rely on this:
// - framebuffer 0 takes the drawing, in the buffer that the swap shows; the viewport is the client area; the
//   scissor, depth, stencil, alpha and cull tests, polygon stipple and smoothing, logic operation, primitive
//   restart, rasterizer discard, conservative rasterization, sRGB writes and the sample tests are off;
//   polygons are filled; all colours are written;
// - blending is on for buffer 0: added, SRC_ALPHA and ONE_MINUS_SRC_ALPHA for colour and alpha;
// - texture unit 0 is active, with no sampler object; a vertex array of ours is bound, which is kept from
//   frame to frame, so its attributes are as the last frame left them.
// It may freely change: program, vertex array, array buffer, element array buffer, 2D texture of unit 0. It
// must leave alone all else, and must:
// - call g_fnGuardUpload() (draw/pixel_guard.h) ahead of each upload of pixels, g_fnGuardRead() ahead of
// reading framebuffer 0;
// - write 1 to all eight gl_ClipDistance in vertex shaders: that many switches are not asked for each frame.
//
// The scissor box is not set, since the test is off. Conditional rendering cannot be asked for: what it
// discards is the overlay's drawing of that frame, and nothing else.

/// Saves the program's state and sets what the drawing needs. False where the drawing would reach the
/// program: nothing is changed then, nothing may be drawn, and the end is not called.
bool g_fnBeginOuterGuard();
/// Gives back what begin and the two functions below changed.
void g_fnEndOuterGuard() noexcept;

/// Deletes the vertex array kept for the current context and forgets what is known of it.
void g_fnReleaseOuterGuard() noexcept;
/// Forgets that vertex array and deletes nothing, for a context that is gone or not current.
void g_fnForgetOuterGuard() noexcept;
