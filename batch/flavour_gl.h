#pragma once
// The OpenGL flavour: the one place that knows all its classes.

/// Puts its makers into g_stCreationTable; the release hook is the frame driver's to set.
void g_fnFillCreationTable_GL() noexcept;
