#pragma once
// The part of the outer guard that most frames don't need: the state of pixel uploads and reads, asked for
// and set when the first of them comes. Outside begin and end the functions for the drawing do nothing.

/// From here on g_fnGuardUpload() and g_fnGuardRead() may change state. Pixel transfer exists in the
/// compatibility profile only.
void g_fnBeginGuardPixels(bool bCompatibility) noexcept;
/// Gives back what they changed.
void g_fnEndGuardPixels() noexcept;

/// Ahead of an upload of pixels: the plain unpack state, asked for once a frame.
void g_fnGuardUpload() noexcept;
/// Ahead of reading framebuffer 0: binds it for that, with the back buffer.
void g_fnGuardRead() noexcept;
/// That and the plain pack state, ahead of reading it into memory. False outside begin and end, where such a
/// read would lie in memory as the program has set it.
bool g_fnGuardReadToMemory() noexcept;
