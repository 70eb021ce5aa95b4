#pragma once
// The language file: a face and captions that take the place of the built-in ones. It lies in the suite's
// install folder, or on a machine without one in the folder Languages of the data folder; the settings store
// names it, and says by which tag it holds a row's caption.
#include "config/make/profile_fonts.h"

#include <span>
#include <string>

/// The face of the language in the slot that a style writes its captions with. Without a language file, or
/// with one that can't be read, all slots stay as they are.
void g_fnOverrideLanguageFontClassic(std::span<stFontRecord> slots);
void g_fnOverrideLanguageFontRV5(std::span<stFontRecord> slots);

/// Gives the titles of rows, and the titles and units of sensors on display, the texts of the language file,
/// cleaned, and moves titles as it says. After all templates are read. False if no language is active or its
/// file can't be read; nothing has changed then.
bool g_fnApplyLanguageStrings();

/// A caption without what stands behind it in the file: an ending of three characters up to "=", then an
/// expression in parentheses with the character before it.
std::u16string g_fnCleanCaption(std::u16string_view wzText);
