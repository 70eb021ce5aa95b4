#pragma once
// The developer's report on the current data bank.

/// Prints bank, names, offsets and values to standard output. May throw std::bad_alloc.
void g_fnPrintDataReport();
