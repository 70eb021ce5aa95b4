// Loads pictures as the overlay does, over the real back-end, and writes down what came out: a line a
// picture, and the bytes of all its frames in a file beside it. Usage: image_dump FOLDER NAME..., names in
// FOLDER.
#include "base/log.h"
#include "draw/texture.h"

#include <cstdio>
#include <string>

namespace {

std::string g_strRefused;

void Note(const char* szLine) {
    const std::string strLine = szLine;
    const std::size_t uAt = strLine.find("refused: ");
    if (uAt != std::string::npos) g_strRefused = strLine.substr(uAt + 9, strLine.find('\n') - uAt - 9);
}

bool WriteFrames(CTexture_Base& texture, const std::string& strPath) {
    std::FILE* const pFile = std::fopen(strPath.c_str(), "wb");
    bool bWritten = pFile != nullptr;
    for (u32 i = 0; bWritten && i < static_cast<u32>(texture.m_uFrameCount); ++i) {
        u8* pPixels = nullptr;
        texture.m_fnGetLevel(&pPixels, i, 0);
        bWritten = std::fwrite(pPixels, texture.m_uFrameBytes, 1, pFile) == 1;
    }
    if (pFile) bWritten = std::fclose(pFile) == 0 && bWritten;
    return bWritten;
}

void PrintFacts(const char* szName, CTexture_Base& texture) {
    std::printf(
        "%s ok size=%ux%u display=%ux%u frames=%d file=%u stored=%u format=%u source=%u swap=%d loop=%d:%u",
        szName, texture.m_uWidth, texture.m_uHeight, texture.m_uDisplayW, texture.m_uDisplayH,
        texture.m_uFrameCount, texture.m_uFileFrames, texture.m_uStoredFrames, texture.m_uFormat,
        texture.m_uSourceFormat, texture.m_bSwapRB, texture.m_bLoops, texture.m_uLoopCount);
    std::printf(" background=%.0f,%.0f,%.0f,%.0f delays=", texture.m_fBackground[0], texture.m_fBackground[1],
                texture.m_fBackground[2], texture.m_fBackground[3]);
    for (const auto& [uFrame, uDelay] : texture.m_mapFrameDelay)
        if (uFrame < 20) std::printf("%u,", uDelay);
    std::printf("\n");
}

bool Dump(const std::string& strFolder, const char* szName) {
    const std::string strPath = strFolder + "/" + szName;
    CTexture_Base texture;
    g_strRefused.clear();
    if (!texture.m_fnLoadTexture(std::u16string(strPath.begin(), strPath.end()).c_str())) {
        std::printf("%s refused %s\n", szName, g_strRefused.c_str());
        return true;
    }
    PrintFacts(szName, texture);
    return WriteFrames(texture, strPath + ".frames");
}

} // namespace

int main(int iCount, char** aszArguments) {
    g_fnLogSink = &Note;
    for (int i = 2; i < iCount; ++i)
        if (!Dump(aszArguments[1], aszArguments[i])) return 1;
    return iCount > 2 ? 0 : 2;
}
