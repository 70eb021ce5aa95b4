// Tables of the writing. Places are relative to the panel a box hangs in, in canvas units; sizes are line
// heights.
#include "config/fixed_text.h"

#include <array>

namespace {

struct stInk {
    u8 r, g, b, a;
};
constexpr stInk g_stWhite{238, 242, 247, 255}, g_stMuted{168, 180, 196, 255}, g_stBlue{96, 192, 255, 255},
    g_stAmber{255, 184, 92, 255}, g_stShade{0, 0, 0, 160};

struct stAt {
    i32 iCode, x, y;
};

constexpr u32 g_uRegular = 0, g_uBold = 1, g_uMono = 2, g_uIdeographs = 3;
constexpr stFixedFont g_aFonts[] = {{u"DejaVu Sans", 400, 16, 2048}, {u"DejaVu Sans", 700, 16, 2048}};
constexpr stFixedFont g_aSmallFonts[] = {{u"DejaVu Sans", 400, 16, 1024}};
constexpr stFixedFont g_aSheetFonts[] = {{u"DejaVu Sans", 400, 16, 2048},
                                         {u"DejaVu Sans", 700, 16, 2048},
                                         {u"DejaVu Sans Mono", 400, 16, 2048},
                                         {u"WenQuanYi Micro Hei", 400, 16, 2048}};

constexpr stFixedText Text(u64 u64Panel, stAt at, u32 uFont, f32 fSize, stInk c, const char16_t* wz,
                           const char* szValue = nullptr, const char* szName = nullptr) {
    return {u64Panel, szName, szValue, {0,    uFont, fSize,       0,           0,           at.iCode,
                                        at.x, at.y,  0,           0,           c.r,         c.g,
                                        c.b,  c.a,   g_stShade.r, g_stShade.g, g_stShade.b, g_stShade.a,
                                        true, true,  true,        false,       wz}};
}

constexpr stFixedNumber Number(u64 u64Panel, const char* szName, const char* szData, stAt at, u32 uFont,
                               f32 fSize, stInk c) {
    return {u64Panel, szName, szData, {0,           uFont,       fSize,
                                       0,           at.iCode,    at.x,
                                       at.y,        0,           0,
                                       0,           1,           c.r,
                                       c.g,         c.b,         c.a,
                                       g_stShade.r, g_stShade.g, g_stShade.b,
                                       g_stShade.a, true,        g_uDataKindNone,
                                       0,           0,           0}};
}

// The panels of the same layout: 2 header, 4 glass below it, 6 glass at the right, 7 top centre, 9 box at the
// right, 11 box at the bottom left, 13 bar at the foot, 15 box at the bottom right, 16 and 17 unseen frames
// of clock and resolution.
constexpr stFixedText g_aDefaultTexts[] = {
    Text(2, {4, 24, 0}, g_uBold, 28, g_stWhite, u"ORVIN-OSD"),
    Text(2, {6, 24, 0}, g_uRegular, 20, g_stBlue, u"GL", "GL"),
    Text(4, {1, 24, 48}, g_uRegular, 24, g_stMuted, u"FPS"),
    Text(4, {1, 24, 132}, g_uRegular, 20, g_stMuted, u"Frame time"),
    Text(4, {3, 24, 132}, g_uRegular, 20, g_stMuted, u"ms"),
    Text(4, {1, 24, 174}, g_uRegular, 20, g_stMuted, u"Highest"),
    Text(4, {3, 24, 174}, g_uRegular, 20, g_stMuted, u"fps"),
    Text(4, {1, 24, 216}, g_uRegular, 20, g_stMuted, u"Process"),
    Text(4, {3, 24, 216}, g_uRegular, 20, g_stMuted, u"id"),
    Text(7, {5, 0, 0}, g_uRegular, 20, g_stMuted, u"64 bit", "ARCH"),
    Text(9, {2, 0, 20}, g_uBold, 22, g_stAmber, u"GPU"),
    Text(9, {2, 34, 158}, g_uRegular, 20, g_stWhite, u"°C"),
    Text(11, {1, 18, 14}, g_uBold, 22, g_stBlue, u"CPU"),
    Text(11, {3, 18, 14}, g_uRegular, 20, g_stMuted, u"%"),
    Text(11, {1, 18, 60}, g_uRegular, 20, g_stMuted, u"Clock"),
    Text(11, {3, 18, 60}, g_uRegular, 20, g_stMuted, u"MHz"),
    Text(11, {1, 18, 102}, g_uRegular, 20, g_stMuted, u"Temp"),
    Text(11, {3, 18, 102}, g_uRegular, 20, g_stMuted, u"°C"),
    Text(13, {4, 30, -3}, g_uBold, 22, g_stBlue, u"Memory"),
    Text(13, {4, 372, -3}, g_uRegular, 20, g_stMuted, u"MB"),
    Text(13, {6, 30, -3}, g_uRegular, 20, g_stMuted, u"% in use"),
    Text(15, {1, 24, 24}, g_uBold, 22, g_stAmber, u"Graphics"),
    Text(15, {1, 24, 72}, g_uRegular, 20, g_stMuted, u"Clock"),
    Text(15, {3, 24, 72}, g_uRegular, 20, g_stMuted, u"MHz"),
    Text(15, {1, 24, 114}, g_uRegular, 20, g_stMuted, u"VRAM"),
    Text(15, {3, 24, 114}, g_uRegular, 20, g_stMuted, u"MB"),
    Text(16, {7, 0, 0}, g_uBold, 48, g_stWhite, u":", nullptr, "clock[0]"),
    Text(16, {7, 0, 0}, g_uBold, 48, g_stWhite, u":", nullptr, "clock[1]"),
    Text(17, {7, 0, 0}, g_uRegular, 22, g_stWhite, u"×", nullptr, "resolution"),
};
constexpr stFixedNumber g_aDefaultNumbers[] = {
    Number(4, "fps", "FPS", {3, 24, 16}, g_uBold, 66, g_stWhite),
    Number(4, "frame", "FRAME_TIME", {3, 66, 132}, g_uRegular, 20, g_stWhite),
    Number(4, "most", "FPS_MAX", {3, 72, 174}, g_uRegular, 20, g_stWhite),
    Number(4, "pid", "PID", {3, 54, 216}, g_uRegular, 20, g_stWhite),
    Number(9, "gpu load", "GPU_USAGE#0", {2, 0, 66}, g_uBold, 60, g_stWhite),
    Number(9, "gpu temp", "GPU_TEMP#0", {2, -14, 158}, g_uRegular, 20, g_stWhite),
    Number(11, "cpu load", "CPU_USAGE#0", {3, 54, 14}, g_uRegular, 20, g_stWhite),
    Number(11, "cpu clock", "CPU_CLK#0", {3, 84, 60}, g_uRegular, 20, g_stWhite),
    Number(11, "cpu temp", "CPU_TEMP#0", {3, 60, 102}, g_uRegular, 20, g_stWhite),
    Number(13, "ram", "RAM_USAGE_MB#0", {6, 360, -3}, g_uRegular, 20, g_stWhite),
    Number(13, "ram part", "RAM_USAGE_P#0", {6, 144, -3}, g_uRegular, 20, g_stWhite),
    Number(15, "gpu clock", "GPU_CLK#0", {3, 90, 72}, g_uRegular, 20, g_stWhite),
    Number(15, "vram", "VRAM_USAGE_MB#0", {3, 72, 114}, g_uRegular, 20, g_stWhite),
    Number(16, "clock[0]", nullptr, {7, 0, 0}, g_uBold, 48, g_stWhite),
    Number(16, "clock[1]", nullptr, {7, 0, 0}, g_uBold, 48, g_stWhite),
    Number(16, "clock[2]", nullptr, {7, 0, 0}, g_uBold, 48, g_stWhite),
    Number(17, "resolution[0]", nullptr, {7, 0, 0}, g_uRegular, 22, g_stWhite),
    Number(17, "resolution[1]", nullptr, {7, 0, 0}, g_uRegular, 22, g_stWhite),
};
constexpr stFixedMixed g_aDefaultMixed[] = {{"clock", "SYSTEM_TIME", 16, 8, 0, 0, 0},
                                            {"resolution", "RESOLUTION", 17, 8, 0, 0, 8}};

/// Names of generated number boxes; they must live as long as the tables.
constexpr const char* g_aszNames[] = {"n0",  "n1",  "n2",  "n3",  "n4",  "n5",  "n6",  "n7",  "n8",  "n9",
                                      "n10", "n11", "n12", "n13", "n14", "n15", "n16", "n17", "n18", "n19",
                                      "n20", "n21", "n22", "n23", "n24", "n25", "n26", "n27", "n28", "n29",
                                      "n30", "n31", "n32", "n33", "n34", "n35", "n36", "n37", "n38", "n39"};
/// What they show, in turn: the overlay's own figures and what a companion publishes.
constexpr const char* g_aszData[] = {"FPS",         "GPU_CLK#0", "FRAME_TIME",  "GPU_TEMP#0",
                                     "CPU_USAGE#0", "FPS_MAX",   "GPU_USAGE#0", "CPU_CLK#0"};

constexpr i32 g_iRowStep = 28;
/// uBoxes rows in turn of label and number; with uPanels > 1 spread over the panels, two of each.
template <u32 uTexts> constexpr std::array<stFixedText, uTexts> MakeLabels(u32 uPanels) {
    std::array<stFixedText, uTexts> a{};
    for (u32 u = 0; u < uTexts; ++u)
        a[u] = Text(u % uPanels + 1, {1, 12, 12 + g_iRowStep * static_cast<i32>(u / uPanels)}, g_uRegular, 22,
                    g_stMuted, u"Label");
    return a;
}
template <u32 uNumbers> constexpr std::array<stFixedNumber, uNumbers> MakeValues(u32 uPanels) {
    std::array<stFixedNumber, uNumbers> a{};
    for (u32 u = 0; u < uNumbers; ++u)
        a[u] = Number(u % uPanels + 1, g_aszNames[u], g_aszData[u % std::size(g_aszData)],
                      {3, 12, 12 + g_iRowStep * static_cast<i32>(u / uPanels)}, g_uRegular, 22, g_stWhite);
    return a;
}
constexpr auto g_aTextsA = MakeLabels<4>(1);
constexpr auto g_aNumbersA = MakeValues<4>(1);
constexpr auto g_aTextsB = MakeLabels<19>(1);
constexpr auto g_aNumbersB = MakeValues<18>(1);
constexpr auto g_aTexts80 = MakeLabels<40>(20);
constexpr auto g_aNumbers80 = MakeValues<40>(20);

/// Lines that wrap at iWidth.
constexpr stFixedText Wrapped(u64 u64Panel, stAt at, f32 fSize, i32 iWidth, const char16_t* wz) {
    stFixedText st = Text(u64Panel, at, g_uRegular, fSize, g_stWhite, wz);
    st.stText.iWidth = iWidth;
    st.stText.iHeight = static_cast<i32>(fSize);
    st.stText.bAutoSize = false;
    return st;
}
/// Cut off at a window of iWidth.
constexpr stFixedText Clipped(u64 u64Panel, stAt at, f32 fSize, i32 iWidth, const char16_t* wz) {
    stFixedText st = Text(u64Panel, at, g_uRegular, fSize, g_stWhite, wz);
    st.stText.iWidth = iWidth;
    st.stText.iHeight = static_cast<i32>(fSize);
    st.stText.bFitToText = false;
    return st;
}

// Every script, size and weight that text is looked at in; on one dark panel.
constexpr const char16_t* g_wzPangram = u"The quick brown fox jumps over 13 lazy dogs.";
constexpr stFixedText g_aSheetTexts[] = {
    Text(1, {1, 24, 24}, g_uRegular, 34, g_stWhite, g_wzPangram),
    Text(1, {1, 24, 76}, g_uBold, 34, g_stWhite, g_wzPangram),
    Text(1, {1, 24, 128}, g_uMono, 34, g_stWhite, u"!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"),
    Text(1, {1, 24, 180}, g_uRegular, 34, g_stBlue, u"Äpfel, Öl, Übung, ß, ñ, ç, é, å, ø, ½, ±, µ, °C"),
    Text(1, {1, 24, 232}, g_uRegular, 34, g_stBlue, u"Съешь ещё этих мягких французских булок"),
    Text(1, {1, 24, 284}, g_uRegular, 34, g_stBlue, u"Ξεσκεπάζω την ψυχοφθόρα βδελυγμία"),
    Text(1, {1, 24, 336}, g_uIdeographs, 34, g_stAmber, u"中文字形 日本語かな 한국어"),
    Text(1, {1, 24, 388}, g_uRegular, 34, g_stAmber, u"\U0001D6D4 \U0001D538 \u25B2 \u2192"),
    Text(1, {1, 24, 444}, g_uRegular, 8, g_stWhite, u"Size 8: frame time 16.67 ms"),
    Text(1, {1, 24, 462}, g_uRegular, 12, g_stWhite, u"Size 12: frame time 16.67 ms"),
    Text(1, {1, 24, 486}, g_uRegular, 16, g_stWhite, u"Size 16: frame time 16.67 ms"),
    Text(1, {1, 24, 516}, g_uRegular, 24, g_stWhite, u"Size 24: frame time 16.67 ms"),
    Text(1, {1, 24, 556}, g_uRegular, 48, g_stWhite, u"Size 48: 16.67 ms"),
    Text(1, {1, 24, 616}, g_uBold, 96, g_stWhite, u"Size 96: 60"),
    Text(1, {1, 840, 388}, g_uRegular, 34, g_stAmber, u"\u2588\u2588"),
    Wrapped(1, {1, 840, 450}, 24, 420,
            u"With a width of its own a text wraps at the glyph that would pass the edge."),
    Clipped(1, {1, 840, 580}, 24, 300, u"Cut off at the right edge of its window."),
};

} // namespace

const stFixedWriting g_stDefaultWriting{g_aFonts, g_aDefaultTexts, g_aDefaultNumbers, g_aDefaultMixed};
const stFixedWriting g_stWritingA{g_aSmallFonts, g_aTextsA, g_aNumbersA, {}};
const stFixedWriting g_stWritingB{g_aSmallFonts, g_aTextsB, g_aNumbersB, {}};
const stFixedWriting g_stBoxes80Writing{g_aSmallFonts, g_aTexts80, g_aNumbers80, {}};
const stFixedWriting g_stTextSheetWriting{g_aSheetFonts, g_aSheetTexts, {}, {}};
