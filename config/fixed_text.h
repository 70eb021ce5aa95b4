#pragma once
// Fonts, texts and numbers of the layouts that are built in code.
#include "config/number_records.h"
#include "config/text_records.h"
#include "platform/types.h"

#include <span>

/// One font; its place in the table is its place in g_ppFont. The atlas is square, of uGrid by uGrid cells.
struct stFixedFont {
    const char16_t* wzFace;
    i32 iWeight;
    u32 uGrid;
    u32 uAtlas; ///< side in pixels
};

/// One text box. Its id is its place in the table plus 1.
struct stFixedText {
    u64 u64Panel;        ///< panel it hangs in, 0 for the root
    const char* szName;  ///< null: found by nobody
    const char* szValue; ///< program value that takes the place of the text, or null
    stTextInit stText;
};

/// One number box. Its id is its place in the table plus 1.
struct stFixedNumber {
    u64 u64Panel;
    const char* szName;
    const char* szData; ///< data full name; null: part of a mixed item
    stNumInit stNumber;
};

/// A clock or a resolution over number boxes "NAME[i]", text boxes "NAME[i]" and a panel "NAME_F".
struct stFixedMixed {
    const char* szName;
    const char* szData;
    u64 u64Panel;
    i32 iAlign; ///< 7 left, 8 centre, 9 right
    i32 iX, iY;
    f32 fGap;
};

struct stFixedWriting {
    std::span<const stFixedFont> fonts;
    std::span<const stFixedText> texts;
    std::span<const stFixedNumber> numbers;
    std::span<const stFixedMixed> mixed;
};

/// The writing of each layout that has any.
extern const stFixedWriting g_stDefaultWriting, g_stWritingA, g_stWritingB, g_stBoxes80Writing,
    g_stTextSheetWriting;

/// Makes fonts, boxes and the items that bind numbers to data. A flavour without fonts writes nothing. False
/// if something could not be made.
bool g_fnMakeFixedWriting(const stFixedWriting& st);
/// Hangs the boxes into their panels; after the panels hang themselves.
void g_fnHangFixedWriting(const stFixedWriting& st);
