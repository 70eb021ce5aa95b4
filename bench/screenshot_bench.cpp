// What a screenshot costs on the render thread, on the driver of this machine: the reading of the frame and
// the turning of its rows, beside a plain glReadPixels of that size. Arguments: width, height, rounds. Prints
// one JSON line, microseconds a round; the pixels then belong to the worker, so nothing is copied.
#include "capture/frame_pixels.h"
#include "platform/clock.h"
#include "platform/gl_api.h"
#include "platform/headless/egl_context.h"
#include <GL/glew.h>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

f64 Microseconds(i64 iFrom, i64 iTo) { return f64(iTo - iFrom) / 1000.0; }

/// A frame that is drawn and finished, so that reading waits for nothing but itself.
void Draw(u32 uRound) {
    glClearColor(0.1f * f32(uRound % 10), 0.4f, 0.7f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glFinish();
}

void Print(const char* szName, const std::vector<f64>& fTaken, const char* szBehind) {
    std::printf("\"%s\": [", szName);
    for (std::size_t u = 0; u < fTaken.size(); ++u) std::printf("%s%.1f", u ? ", " : "", fTaken[u]);
    std::printf("]%s", szBehind);
}

} // namespace

int main(int iCount, char** pszArguments) {
    if (iCount < 4) return 2;
    platform::headless::EglOptions stOptions;
    stOptions.m_uWidth = u32(std::atoi(pszArguments[1]));
    stOptions.m_uHeight = u32(std::atoi(pszArguments[2]));
    const u32 uRounds = u32(std::atoi(pszArguments[3])), uWidth = stOptions.m_uWidth,
              uHeight = stOptions.m_uHeight;
    platform::headless::EglContext context;
    if (!context.Create(stOptions) || !platform::InitGlew()) return 1;
    std::vector<f64> fPlain, fRead, fFlip;
    for (u32 u = 0; u < uRounds; ++u) {
        Draw(u);
        i64 iStart = platform::SteadyNanoseconds();
        {
            const FramePixels pPlain(static_cast<u8*>(std::malloc(std::size_t{uWidth} * uHeight * 4)));
            glReadPixels(0, 0, GLsizei(uWidth), GLsizei(uHeight), GL_RGBA, GL_UNSIGNED_BYTE, pPlain.get());
            fPlain.push_back(Microseconds(iStart, platform::SteadyNanoseconds()));
        }
        Draw(u + 1);
        iStart = platform::SteadyNanoseconds();
        const FramePixels pPixels = g_fnReadFrame(uWidth, uHeight);
        const i64 iRead = platform::SteadyNanoseconds();
        if (!pPixels) return 1;
        g_fnFlipRows(pPixels.get(), uWidth, uHeight);
        fRead.push_back(Microseconds(iStart, iRead));
        fFlip.push_back(Microseconds(iRead, platform::SteadyNanoseconds()));
    }
    std::printf("{");
    Print("plain_us", fPlain, ", ");
    Print("read_us", fRead, ", ");
    Print("flip_us", fFlip, "}\n");
}
