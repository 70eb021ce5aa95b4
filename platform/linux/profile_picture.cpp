#include "platform/profile_picture.h"
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <png.h>
#include <unistd.h>

namespace platform::tool {
namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// Frees what the library holds, in every outcome.
struct Image : png_image {
    Image() : png_image{} { version = PNG_IMAGE_VERSION; }
    ~Image() { png_image_free(this); }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
};

bool WriteTo(std::FILE* pFile, const Picture& picture, std::string& strWhy) {
    std::vector<u8> aColours(static_cast<size_t>(picture.uWidth) * picture.uHeight * 3);
    for (size_t u = 0; u < aColours.size() / 3; ++u)
        std::memcpy(&aColours[u * 3], &picture.aPixels[u * 4], 3);
    Image image;
    image.width = picture.uWidth;
    image.height = picture.uHeight;
    image.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_stdio(&image, pFile, 0, aColours.data(), 0, nullptr)) {
        strWhy = image.message;
        return false;
    }
    if (std::fflush(pFile) == 0) return true;
    strWhy = std::strerror(errno);
    return false;
}

} // namespace

Result ReadPicture(const std::string& strPath, Picture& picture) {
    const File pFile(std::fopen(strPath.c_str(), "rb"), std::fclose);
    if (!pFile) return Result::NotFound("cannot open " + strPath + ": " + std::strerror(errno));
    Image image;
    if (!png_image_begin_read_from_stdio(&image, pFile.get()))
        return Result::Fail(strPath + " is no PNG: " + image.message);
    if (image.width > g_uPictureSideMost || image.height > g_uPictureSideMost)
        return Result::Fail(strPath + " is too large");
    image.format = PNG_FORMAT_RGBA;
    picture = Picture(image.width, image.height);
    if (!png_image_finish_read(&image, nullptr, picture.aPixels.data(), 0, nullptr))
        return Result::Fail(strPath + ": " + image.message);
    return {};
}

Result WritePicture(const std::string& strPath, const Picture& picture) {
    const std::string strNew = strPath + ".new";
    std::string strWhy;
    {
        const File pFile(std::fopen(strNew.c_str(), "wb"), std::fclose);
        if (!pFile) return Result::Fail("cannot write " + strPath + ": " + std::strerror(errno));
        WriteTo(pFile.get(), picture, strWhy);
    }
    if (strWhy.empty() && std::rename(strNew.c_str(), strPath.c_str()) != 0) strWhy = std::strerror(errno);
    if (strWhy.empty()) return {};
    unlink(strNew.c_str());
    return Result::Fail("cannot write " + strPath + ": " + strWhy);
}

} // namespace platform::tool
