#pragma once
// What lies behind the overlay in a picture.
#include "companion/result.h"
#include "platform/profile_picture.h"

namespace companion {

/// "#RRGGBB", "bright", "dark", "checker" or the path of a picture, which is scaled to cover the whole.
Result MakeBackground(const std::string& strWish, u32 uWidth, u32 uHeight, Picture& picture);

} // namespace companion
