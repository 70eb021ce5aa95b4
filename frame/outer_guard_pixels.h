#pragma once
// The part of the outer guard that most frames don't need: the state of pixel uploads and reads, asked for
// and set when the first of them comes. See outer_guard.h for g_fnGuardUpload() and g_fnGuardRead().

/// From here on the two may change state. Pixel transfer exists in the compatibility profile only.
void g_fnBeginGuardPixels(bool bCompatibility) noexcept;
/// Gives back what they changed.
void g_fnEndGuardPixels() noexcept;
