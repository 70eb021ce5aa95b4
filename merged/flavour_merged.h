#pragma once
// The merged flavour: the pictures of the OpenGL flavour from few calls. Everything of it lies in this
// folder; the controls know neither.

/// Puts the makers of the merged flavour in, or those of the OpenGL flavour where the files of its programs
/// are missing. Needs the context current.
void g_fnFillCreationTable_Merged() noexcept;
