#include "capture/shot_file.h"

#include "base/log.h"
#include "capture/source_pixels.h"
#include "draw/data_path.h"
#include "platform/folders.h"

#include <string>

namespace {

struct stTypeRow {
    const char16_t* wzExtension;
    platform::ImageContainer eContainer;
    const char* szOrder;
    platform::ImagePixels ePixels;
    u32 uBytes; ///< of a pixel
};
constexpr stTypeRow g_aTypes[SHOT_TYPES] = {
    {u".bmp", platform::ImageContainer::Bmp, "BGR", platform::ImagePixels::Bgr24, 3},
    {u".jpg", platform::ImageContainer::Jpeg, "BGR", platform::ImagePixels::Bgr24, 3},
    {u".png", platform::ImageContainer::Png, "BGRA", platform::ImagePixels::Bgra32, 4},
    {u".heic", platform::ImageContainer::Heif, "BGRA", platform::ImagePixels::Bgra32, 4},
};

/// The data folder's own path ends in a separator; a second one does no harm.
std::u16string PathOf(const char16_t* wzFolder, const char16_t* wzName, const stTypeRow& type) {
    char16_t wzData[g_uDataPathCapacity] = {};
    if (!wzFolder[0] && g_fnResolveDataPath(wzData, u"")) wzFolder = wzData;
    return std::u16string(wzFolder) + platform::g_cPathSeparator + wzName + type.wzExtension;
}

i32 Save(u32 uWidth, u32 uHeight, const stChannelPixels& source, const stTypeRow& type,
         const std::u16string& wstrPath) {
    const ChannelBuffer pPixels =
        g_fnConvertChannels(source.pPixels, uWidth, uHeight, source.szOrder, type.szOrder);
    return g_fnSaveImage(uWidth, uHeight, uWidth * type.uBytes, pPixels.get(), wstrPath.c_str(),
                         type.eContainer, type.ePixels);
}

} // namespace

bool g_fnSaveImage(u32 uWidth, u32 uHeight, const void* pPixels, u32 uFormatCode, u32 uFileType,
                   const char16_t* wzFolder, const char16_t* wzName) noexcept try {
    if (!wzFolder || !wzName || uFileType >= SHOT_TYPES) return true;
    const stTypeRow& type = g_aTypes[uFileType];
    const stChannelPixels source = g_fnPrepareSource(pPixels, uWidth, uHeight, uFormatCode);
    if (!source.pPixels) return true;
    const i32 iStep = Save(uWidth, uHeight, source, type, PathOf(wzFolder, wzName, type));
    if (iStep != 0) g_fnLog("GLGraphics: g_fnSaveImage() - step %i failed", iStep);
    return true;
} catch (...) { // no memory
    return true;
}
