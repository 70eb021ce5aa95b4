#include "tools/profile/check/attributes.h"

#include <array>
#include <cstddef>

namespace companion {
namespace {

constexpr double g_fAny = 1e9;
constexpr double g_fLength = 16384;

constexpr stAttribute Byte(const char* szName, const char* szDefault, const char* szMeaning) {
    return {szName, ValueKind::Whole, szDefault, 0, 255, "0 to 255", szMeaning};
}
constexpr stAttribute Side(const char* szName, const char* szMeaning) {
    return {szName, ValueKind::Whole, "0", 0, g_fLength, "0 to 16384", szMeaning};
}
constexpr stAttribute Offset(const char* szName, const char* szMeaning) {
    return {szName, ValueKind::Whole, "0", -g_fLength, g_fLength, "-16384 to 16384", szMeaning};
}
constexpr stAttribute Anchor(const char* szName, const char* szMeaning) {
    return {szName, ValueKind::Whole, "1", -9, 9, "-9 to 9", szMeaning};
}
constexpr stAttribute Value(const char* szName, const char* szDefault, const char* szMeaning) {
    return {szName, ValueKind::Number, szDefault, -g_fAny, g_fAny, "any number", szMeaning};
}
constexpr stAttribute Percent(const char* szName, const char* szDefault, const char* szMeaning) {
    return {szName, ValueKind::Number, szDefault, 1, 100, "1 to 100", szMeaning};
}
constexpr stAttribute Degree(const char* szName, const char* szMeaning) {
    return {szName, ValueKind::Number, "0", 0, 359.999, "0 to below 360", szMeaning, true};
}
constexpr stAttribute Switch(const char* szName, const char* szMeaning) {
    return {szName, ValueKind::Whole, "0", 0, 1, "0, 1", szMeaning, true};
}
constexpr stAttribute Data(const char* szMeaning) {
    return {"DataFullName", ValueKind::Data, "", 1, 63, "1 to 63 bytes", szMeaning};
}
constexpr stAttribute Stack() {
    return {"ZIndex",
            ValueKind::Whole,
            "",
            -2147483647.0,
            2147483647.0,
            "whole number, empty counts as 0",
            "place in the stack of graphs and charts; the larger lies on top"};
}

constexpr stAttribute g_stFace{"FontName",
                               ValueKind::Face,
                               "",
                               1,
                               127,
                               "1 to 127 letters",
                               "face of the font; without it the item is refused"};
constexpr stAttribute g_stTextSize{
    "TextSize", ValueKind::Number, "0", 1, 1000, "1 to 1000", "height of a line, canvas pixels"};

/// Of texts and memos.
constexpr stAttribute g_aLetters[] = {
    g_stFace,
    g_stTextSize,
    {"TextSpacingX", ValueKind::Number, "0", -100, 100, "-100 to 100",
     "extra room behind each character, canvas pixels"},
};
/// Of texts, memos and numbers.
constexpr stAttribute g_aWriting[] = {
    Byte("TextColorR", "255", "red of the writing"),
    Byte("TextColorG", "255", "green of the writing"),
    Byte("TextColorB", "255", "blue of the writing"),
    Byte("TextColorA", "255", "opacity of the writing: 0 unseen, 255 solid"),
    Byte("ShadowColorR", "0", "red of the shadow"),
    Byte("ShadowColorG", "0", "green of the shadow"),
    Byte("ShadowColorB", "0", "blue of the shadow"),
    Byte("ShadowColorA", "255", "opacity of the shadow, where shadows are on"),
};

/// One table out of several, in their order.
template <std::size_t... N> constexpr auto Join(const stAttribute (&... aParts)[N]) {
    std::array<stAttribute, (N + ...)> aAll{};
    std::size_t u = 0;
    const auto Add = [&](std::span<const stAttribute> part) {
        for (const stAttribute& st : part) aAll[u++] = st;
    };
    (Add(aParts), ...);
    return aAll;
}

constexpr stAttribute g_aCommon[] = {
    Switch("IsShow", "1 shows the item; with 0, or without it, the item does not exist"),
    {"Name", ValueKind::Text, "", 1, 127, "1 to 127 bytes",
     "name of the item, used once; behind the last @ stands the name of its owner"},
    Side("FrameSizeW", "width of the frame, canvas pixels"),
    Side("FrameSizeH", "height of the frame, canvas pixels"),
    Anchor("FrameAnchor", "point of the screen (or of the owner's frame) that the frame hangs on"),
    Offset("FrameAnchorX", "distance of the frame from that point, sideways"),
    Offset("FrameAnchorY", "distance of the frame from that point, up or down"),
    Side("ContentSizeW", "width of what is shown in the frame, canvas pixels"),
    Side("ContentSizeH", "height of what is shown in the frame, canvas pixels"),
    Anchor("ContentAnchor", "point of the frame that the content hangs on"),
    Offset("ContentAnchorX", "distance of the content from that point, sideways"),
    Offset("ContentAnchorY", "distance of the content from that point, up or down"),
};

constexpr stAttribute g_aTextBoxOwn[] = {
    {"Text", ValueKind::Text, "", 0, 255, "up to 255 bytes", "the words that are shown"},
    {"StringFullName", ValueKind::Text, "", 0, 63, "GL, ARCH, PROFILE_NAME, PID, TID",
     "shows what the program knows of itself in place of the text"},
};
constexpr auto g_aTextBox = Join(g_aTextBoxOwn, g_aLetters, g_aWriting);

constexpr stAttribute g_aMemoFile[] = {
    {"FileName", ValueKind::File, "", 1, 255, "name of a file",
     "text file in the profile's folder, whose words are shown"},
};
constexpr stAttribute g_aMemoLines[] = {
    {"TextSpacingY", ValueKind::Number, "0", -100, 1000, "-100 to 1000",
     "extra room between two lines, canvas pixels"},
};
constexpr auto g_aMemo = Join(g_aMemoFile, g_aLetters, g_aMemoLines, g_aWriting);

constexpr stAttribute g_aNumBoxOwn[] = {
    Data("name of the value; SYSTEM_TIME makes a clock, RESOLUTION the size of the picture"),
    g_stFace,
    g_stTextSize,
    {"TextSpacingX", ValueKind::Number, "0", -100, 100, "-100 to 100",
     "extra room behind each character; between the parts of a clock too"},
};
constexpr auto g_aNumBox = Join(g_aNumBoxOwn, g_aWriting);

constexpr stAttribute g_aPanel[] = {
    Byte("PanelColorR", "0", "red"),
    Byte("PanelColorG", "0", "green"),
    Byte("PanelColorB", "0", "blue"),
    Byte("PanelColorA", "255", "opacity: 0 unseen, 255 solid; of glass the strength of its colour"),
    {"PanelType", ValueKind::Whole, "1", 0, 2, "0, 1, 2", "0 unseen, 1 flat colour, 2 frosted glass"},
    {"PanelScattering", ValueKind::Whole, "30", 0, 100, "0 to 100",
     "how far frosted glass spreads the picture behind it"},
    {"PanelBorder", ValueKind::Number, "0", 0, g_fLength, "0 to 16384",
     "above 0 only a border is drawn, so many canvas pixels thick, along the inside of the edge", true},
};

constexpr stAttribute g_aImage[] = {
    {"ImageFileName", ValueKind::File, "X", 1, 255, "name of a file", "picture in the profile's folder"},
    Byte("ImageColorA", "255", "opacity: 0 unseen, 255 solid"),
    {"TiltDegree", ValueKind::Number, "0", -3600, 3600, "-3600 to 3600",
     "turns the picture, clockwise, in degrees"},
};

constexpr stAttribute g_aLineGraph[] = {
    Data("name of the value"),
    {"LineType", ValueKind::Whole, "0", 0, 3, "0 to 3", "0 line, 1 area, 2 stairs, 3 bars"},
    Byte("LineColorR", "0", "red"),
    Byte("LineColorG", "0", "green"),
    Byte("LineColorB", "0", "blue"),
    Byte("LineColorA", "255", "opacity: 0 unseen, 255 solid"),
    {"DataNum", ValueKind::Whole, "0", 2, 32767, "2 to 32767",
     "columns of a line or an area; stairs and bars count theirs from the width"},
    {"DataWidth", ValueKind::Number, "1.0", 0.1, g_fLength, "0.1 to 16384",
     "width of a bar, thickness of a stair; lines are half a column thick"},
    Value("MinValue", "0", "value at the bottom"),
    Value("MaxValue", "100.0", "value at the top"),
    {"DataStartIdx", ValueKind::Whole, "2", 0, 32767, "0 to 32767",
     "column of the first sample, counted from 1 on the left"},
    Stack(),
};

constexpr stAttribute g_aPieChart[] = {
    Data("name of the value"),
    {"ChartType", ValueKind::Whole, "0", 0, 1, "0, 1", "0 fan, 1 ring"},
    Byte("ChartColorR", "0", "red"),
    Byte("ChartColorG", "0", "green"),
    Byte("ChartColorB", "0", "blue"),
    Byte("ChartColorA", "255", "opacity: 0 unseen, 255 solid"),
    {"SlotNum", ValueKind::Whole, "1", 1, 16384, "1 to 16384",
     "slots; the value fills whole slots, so one slot is either empty or full"},
    {"ShapeSegNum", ValueKind::Whole, "3", 1, 16384, "1 to 16384",
     "straight pieces that the arc of a slot is made of; 1 for a fan"},
    Percent("SlotFillRatio", "100.0", "percent of a slot that is drawn; the rest is the gap behind it"),
    Percent("ChartFillRatio", "50.0", "inner radius of a ring in percent of the outer one"),
    Value("MinValue", "0", "value at which no slot is filled"),
    Value("MaxValue", "100.0", "value at which all slots are filled"),
    Degree("StartDegree", "angle of the first slot; 0 is on the right, 90 at the top"),
    Degree("EndDegree", "angle behind the last slot; the same as the start makes a full turn"),
    Switch("Clockwise",
           "1 turns a full circle clockwise; between two angles the gauge gets as long as the rest"),
    Stack(),
};

constexpr stAttribute g_aRoot[] = {
    {"LayoutStyle", ValueKind::Whole, "0", 0, 2, "0, 1, 2",
     "2 for a custom layout; 0 Classic and 1 RV5, the built-in ones"},
};

constexpr stAttribute g_aPreview[] = {
    {"Width", ValueKind::Whole, "0", 0, g_fLength, "0 to 16384",
     "width of the picture of a preview, canvas pixels"},
    {"Height", ValueKind::Whole, "0", 0, g_fLength, "0 to 16384",
     "height of the canvas, if Width is given too and AspectRatio is empty"},
    {"AspectRatio", ValueKind::Text, "", 0, 255, "two numbers with a colon",
     "not empty, as without any size: the canvas is 1080 high"},
};

constexpr stAttribute g_aCamera[] = {
    Switch("TextGlow", "kept; this version does nothing with it"),
    Switch("TextShadow", "1 gives all writing a shadow, one canvas pixel to the right and down"),
};

constexpr stAttribute g_aPhoto[] = {
    Switch("IsShow", "1 shows it"),
    {"Filename", ValueKind::Text, "", 1, 255, "name of a file", "picture in the profile's folder"},
    {"FrameSizeW", ValueKind::Whole, "200", 0, g_fLength, "0 to 16384", "width of its box, canvas pixels"},
    {"FrameSizeH", ValueKind::Whole, "200", 0, g_fLength, "0 to 16384", "height of its box"},
    Anchor("Anchor", "point of the canvas that the box hangs at, and side of it that the picture lies at"),
    Offset("PositionX", "distance from that point, canvas pixels"),
    Offset("PositionY", "the same, downwards"),
    {"PhotoOpacity", ValueKind::Whole, "0", 0, 100, "0 to 100", "opacity in percent: 0 unseen, 100 solid"},
};

constexpr stElement g_aElements[] = {
    {"OSD", "", ElementUse::Read, g_aRoot, false},
    {"ClassicLayout", "OSD", ElementUse::Ignored, {}, false},
    {"ORVINLayout", "OSD", ElementUse::Ignored, {}, false},
    {"CustomLayout", "OSD", ElementUse::Read, {}, false},
    {"Settings", "CustomLayout", ElementUse::Read, {}, false},
    {"Preview", "Settings", ElementUse::Read, g_aPreview, false},
    {"Camera", "Settings", ElementUse::Read, g_aCamera, false},
    {"Info", "Settings", ElementUse::Read, {}, false},
    {"Memo", "Settings", ElementUse::Ignored, {}, false},
    {"Watermark", "Settings", ElementUse::Ignored, {}, false},
    {"SystemInfo", "Settings", ElementUse::Ignored, {}, false},
    {"Photo", "Settings", ElementUse::Read, g_aPhoto, false},
    {"StopWatch", "Settings", ElementUse::Ignored, {}, false},
    {"TextBox", "Info", ElementUse::Item, g_aTextBox, true},
    {"Memo", "Info", ElementUse::Item, g_aMemo, true},
    {"NumBox", "Info", ElementUse::Item, g_aNumBox, true},
    {"Panel", "Info", ElementUse::Item, g_aPanel, true},
    {"Image", "Info", ElementUse::Item, g_aImage, true},
    {"LineGraph", "Info", ElementUse::Item, g_aLineGraph, true},
    {"PieChart", "Info", ElementUse::Item, g_aPieChart, true},
    {"Card", "Info", ElementUse::Ignored, {}, true},
    {"CPU", "Info", ElementUse::Ignored, {}, true},
    {"Sensor", "Info", ElementUse::Ignored, {}, true},
    {"FPS", "Info", ElementUse::Ignored, {}, false},
    {"FPSAvg", "Info", ElementUse::Ignored, {}, false},
    {"FPSMax", "Info", ElementUse::Ignored, {}, false},
    {"FPSMin", "Info", ElementUse::Ignored, {}, false},
    {"FPS50P", "Info", ElementUse::Ignored, {}, false},
    {"FPS1P", "Info", ElementUse::Ignored, {}, false},
    {"FPS01P", "Info", ElementUse::Ignored, {}, false},
    {"FrameCount", "Info", ElementUse::Ignored, {}, false},
    {"Frametime", "Info", ElementUse::Ignored, {}, false},
    {"SystemTime", "Info", ElementUse::Ignored, {}, false},
    {"Resolution", "Info", ElementUse::Ignored, {}, false},
    {"PoweredByOrvinDeck", "Info", ElementUse::Ignored, {}, false},
    {"DisplayIndex", "Info", ElementUse::Ignored, {}, false},
    {"CustomSettings", "Info", ElementUse::Ignored, {}, false},
};

const stAttribute* FindIn(std::span<const stAttribute> attributes, std::string_view szName) {
    for (const stAttribute& st : attributes)
        if (szName == st.szName) return &st;
    return nullptr;
}

} // namespace

std::span<const stAttribute> CommonAttributes() { return g_aCommon; }
std::span<const stElement> ProfileElements() { return g_aElements; }

const stElement* FindElement(std::string_view szName, std::string_view szParent) {
    for (const stElement& st : g_aElements)
        if (szName == st.szName && szParent == st.szParent) return &st;
    return nullptr;
}

const stAttribute* FindAttribute(const stElement& element, std::string_view szName) {
    if (element.eUse == ElementUse::Item)
        if (const stAttribute* pCommon = FindIn(g_aCommon, szName)) return pCommon;
    return FindIn(element.attributes, szName);
}

} // namespace companion
