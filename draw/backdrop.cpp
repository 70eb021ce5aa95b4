#include "draw/backdrop.h"

#include "draw/canvas.h"
#include "draw/left_names.h"
#include "draw/pixel_guard.h"
#include "platform/gl_api.h"

u32 g_uCopyTexture = 0;
bool g_bCaptureBackdrop = false;

void g_fnCopyBackdrop() {
    if (!g_bCaptureBackdrop) return;
    g_fnGuardRead();
    if (!g_uCopyTexture) glGenTextures(1, &g_uCopyTexture);
    glBindTexture(GL_TEXTURE_2D, g_uCopyTexture);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, static_cast<GLsizei>(g_uWidth),
                     static_cast<GLsizei>(g_uHeight), 0);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_R, GL_CLAMP_TO_BORDER);
    // KEEP(profiles): the border is red.
    static const GLfloat afBorder[4] = {1.0f, 0.0f, 0.0f, 1.0f};
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, afBorder);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void g_fnReleaseBackdrop() noexcept {
    if (!g_uCopyTexture) return;
    g_fnDeleteName(NAMES_TEXTURES, g_uCopyTexture);
    g_uCopyTexture = 0;
}
