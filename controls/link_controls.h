#pragma once
// Last step of a layout's creation: what exists enters the layers, the draw lists and the tree.

/// Works on the current manager; once per layout, after all controls were made.
void g_fnLinkControls();
