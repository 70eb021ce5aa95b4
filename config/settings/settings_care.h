#pragma once
// The reading of section [HostCare] of OSD.ini.

/// Fills g_stHostCare. Called ahead of each build, since the first frame needs the guards already.
void g_fnReadHostCare();
