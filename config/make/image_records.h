#pragma once
// Images from records, and the two that are no items: the photo and the shutter image. For all styles.
#include "base/color.h"
#include "draw/data_path.h"
#include "platform/types.h"

#include <span>

/// One image to make. Lengths in canvas units.
struct stImageInit : stColor {
    u64 u64LB_ID;
    i32 iAnchorCode; ///< of the box in its parent, and of the picture in the box
    i32 iX, iY;
    i32 iWidth, iHeight;
    char16_t wzPath[g_uDataPathCapacity]; ///< whole
    bool bTilted;
    f32 fTiltDegree;
};

/// Id of the photo, which no item of a layout has.
constexpr u64 g_u64PhotoId = 0;

/// Makes and registers one image per record, in order; attaching them is left to g_fnLinkControls. One whose
/// file is missing or can't be shown is logged and left out.
void g_fnCreateImages(std::span<const stImageInit> records);

/// Makes the photo that the settings ask for, the companion's or else the profile's, under id and place 0,
/// below the root. None where none is asked for, or its file can't be shown.
void g_fnCreatePhoto();
/// Makes the shutter image at its place, of no size, from "Screenshot.png" of the data folder. None without
/// that file and its raw picture, or where "Screenshot.anm" gives it nothing to do.
void g_fnCreateShutterImage();
