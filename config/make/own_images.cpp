// The two images that are no items of a layout: the photo and the shutter image.
#include "config/make/image_records.h"
#include "config/profile/profile_panel_keys.h"
#include "config/profile/profile_switches.h"
#include "config/settings/settings.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"
#include "controls/text_file.h"
#include "platform/input_file.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string_view>

namespace {

constexpr char16_t c_wzShutterFile[] = u"Screenshot.png", c_wzShutterCache[] = u"Screenshot.png.cache",
                   c_wzShutterTimes[] = u"Screenshot.anm";

bool TakeCameraPhoto(stImageInit& st) {
    const stCameraPhoto& stPhoto = g_stSettings.stPhoto;
    const std::u16string_view path(stPhoto.wzFilePath);
    if (stPhoto.uIsShow == 0 || path.empty()) return false;
    st.wzPath[path.copy(st.wzPath, g_uDataPathCapacity - 1)] = 0;
    st.iAnchorCode = stPhoto.iAnchor;
    st.iX = stPhoto.iPositionX;
    st.iY = stPhoto.iPositionY;
    st.iWidth = static_cast<i32>(stPhoto.uFrameSizeW);
    st.iHeight = static_cast<i32>(stPhoto.uFrameSizeH);
    st.u8A = stPhoto.uAlpha;
    return true;
}

bool TakeProfilePhoto(stImageInit& st) {
    const stPhotoKeys& stPhoto = g_stLooks.stPhoto;
    if (g_stProfileSwitches.uPhoto == 0 || !stPhoto.wzFilename[0]) return false;
    g_fnResolveProfilePath(st.wzPath, stPhoto.wzFilename);
    st.iAnchorCode = stPhoto.stPlace.iAnchor;
    st.iX = stPhoto.stPlace.iX;
    st.iY = stPhoto.stPlace.iY;
    st.iWidth = static_cast<i32>(stPhoto.uFrameSizeW);
    st.iHeight = static_cast<i32>(stPhoto.uFrameSizeH);
    st.u8A = stPhoto.u8A;
    return true;
}

bool IsDataFile(const char16_t* wzName) {
    char16_t wzPath[g_uDataPathCapacity];
    return g_fnResolveDataPath(wzPath, wzName) && g_fnCheckFileExistence(wzPath);
}

/// True for a file of times, one a step, that is whole.
bool HasShutterSteps() {
    char16_t wzPath[g_uDataPathCapacity];
    if (!g_fnResolveDataPath(wzPath, c_wzShutterTimes)) return false;
    const platform::InputFile pFile = platform::OpenInput(wzPath);
    u8 au8[8] = {};
    if (!pFile || std::fread(au8, sizeof au8, 1, pFile.get()) != 1) return false;
    const u32 uSteps = au8[4] | static_cast<u32>(au8[5]) << 8 | static_cast<u32>(au8[6]) << 16 |
                       static_cast<u32>(au8[7]) << 24;
    if (std::fseek(pFile.get(), 0, SEEK_END) != 0) return false;
    return std::ftell(pFile.get()) == static_cast<i64>(8 + 4 * static_cast<u64>(uSteps));
}

} // namespace

void g_fnCreatePhoto() {
    stImageInit st{};
    st.u64LB_ID = g_u64PhotoId;
    st.u8R = st.u8G = st.u8B = 255;
    if (!TakeCameraPhoto(st) && !TakeProfilePhoto(st)) return;
    g_fnCreateImages({&st, 1});
    if (g_ppImgBox && g_ppImgBox[g_uPhotoImage])
        g_pOSDManager->m_fnAddChild(nullptr, g_ppImgBox[g_uPhotoImage]);
}

void g_fnCreateShutterImage() {
    if (!g_ppImgBox || g_ppImgBox[g_uShutterImage]) return;
    if (!HasShutterSteps() || (!IsDataFile(c_wzShutterFile) && !IsDataFile(c_wzShutterCache))) return;
    std::unique_ptr<CImgBox_Base> pImage(new (std::nothrow) CImgBox_Base);
    if (!pImage) return;
    pImage->m_fnSetColorB(255, 255, 255, 255);
    pImage->m_fnSetBoxSize(0, 0); // until a picture is taken
    pImage->m_fnSetImageFile(c_wzShutterFile, false);
    if (pImage->m_fnInitialize()) g_ppImgBox[g_uShutterImage] = pImage.release();
}
