#include "tests/hosts/host_x11.h"
#include <X11/Xutil.h>
#include <dlfcn.h>

CX11Windows::CX11Windows() {
    XInitThreads();
    m_pDisplay = XOpenDisplay(nullptr);
}

CX11Windows::~CX11Windows() {
    if (m_pDisplay) XCloseDisplay(m_pDisplay);
}

Window CX11Windows::m_fnMake(Visual* pVisual, int iDepth, u32 uWidth, u32 uHeight) {
    const Window uRoot = DefaultRootWindow(m_pDisplay);
    XSetWindowAttributes stAttributes{};
    stAttributes.colormap = XCreateColormap(m_pDisplay, uRoot, pVisual, AllocNone);
    stAttributes.event_mask = StructureNotifyMask | ExposureMask;
    stAttributes.override_redirect = True;
    const Window uWindow =
        XCreateWindow(m_pDisplay, uRoot, NextWindowX(uWidth), 0, uWidth, uHeight, 0, iDepth, InputOutput,
                      pVisual, CWColormap | CWEventMask | CWOverrideRedirect, &stAttributes);
    XStoreName(m_pDisplay, uWindow, "orvin host");
    XMapRaised(m_pDisplay, uWindow);
    XEvent unEvent;
    XIfEvent(
        m_pDisplay, &unEvent,
        [](Display*, XEvent* pEvent, XPointer pWanted) -> Bool {
            return pEvent->type == MapNotify && pEvent->xmap.window == *reinterpret_cast<Window*>(pWanted);
        },
        reinterpret_cast<XPointer>(const_cast<Window*>(&uWindow)));
    return uWindow;
}

void CX11Windows::m_fnDestroy(Window uWindow) {
    XDestroyWindow(m_pDisplay, uWindow);
    XSync(m_pDisplay, False);
}

void CX11Windows::m_fnResize(Window uWindow, u32 uWidth, u32 uHeight) {
    XResizeWindow(m_pDisplay, uWindow, uWidth, uHeight);
    XSync(m_pDisplay, False);
}

void CX11Windows::m_fnHide(Window uWindow) {
    XUnmapWindow(m_pDisplay, uWindow);
    XSync(m_pDisplay, False);
}

void CX11Windows::m_fnPump() {
    XEvent unEvent;
    // What lies in the queue and the socket already: asking the server would cost a round trip a frame.
    while (XEventsQueued(m_pDisplay, QueuedAlready) > 0) XNextEvent(m_pDisplay, &unEvent);
}

stPicture CX11Windows::m_fnRead(Window uWindow) {
    XWindowAttributes stAttributes;
    XSync(m_pDisplay, False);
    if (!XGetWindowAttributes(m_pDisplay, uWindow, &stAttributes)) return {};
    const u32 uWidth = u32(stAttributes.width), uHeight = u32(stAttributes.height);
    XImage* pImage = XGetImage(m_pDisplay, uWindow, 0, 0, uWidth, uHeight, AllPlanes, ZPixmap);
    if (!pImage) return {};
    stPicture stRead{uWidth, uHeight, {}};
    stRead.u8Rgb.reserve(std::size_t(uWidth) * uHeight * 3);
    for (u32 y = 0; y < uHeight; ++y)
        for (u32 x = 0; x < uWidth; ++x) {
            const unsigned long uPixel = XGetPixel(pImage, int(x), int(y));
            for (u32 uShift : {16u, 8u, 0u}) stRead.u8Rgb.push_back(u8(uPixel >> uShift));
        }
    XDestroyImage(pImage);
    return stRead;
}

void* LookupInLibrary(const char* szLibrary, const char* szName) {
    void* hLibrary = dlopen(szLibrary, RTLD_LAZY | RTLD_LOCAL);
    return hLibrary ? dlsym(hLibrary, szName) : nullptr;
}

void (*FindFrameHook())() { return reinterpret_cast<void (*)()>(dlsym(RTLD_DEFAULT, "orvin_bench_frame")); }
