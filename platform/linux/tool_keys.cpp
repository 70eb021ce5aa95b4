// Linux: keys by passive grabs of an X server. Wayland has nothing of the kind for a program like this.
#include "platform/tool_keys.h"
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/uio.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

namespace platform::tool {
namespace {

struct Free {
    void operator()(void* p) const { std::free(p); }
};
template <class T> std::unique_ptr<T, Free> Own(T* p) { return std::unique_ptr<T, Free>(p); }

struct Disconnect {
    void operator()(xcb_connection_t* p) const { xcb_disconnect(p); }
};

/// A connection that works, or null.
class Server {
  public:
    Server() {
        int iScreen = 0;
        m_pConnection.reset(xcb_connect(nullptr, &iScreen));
        if (xcb_connection_has_error(Get())) {
            m_pConnection.reset();
            return;
        }
        auto it = xcb_setup_roots_iterator(xcb_get_setup(Get()));
        for (; iScreen > 0 && it.rem > 1; --iScreen) xcb_screen_next(&it);
        m_uRoot = it.data->root;
    }
    explicit operator bool() const { return m_pConnection != nullptr; }
    xcb_connection_t* Get() const { return m_pConnection.get(); }
    xcb_window_t Root() const { return m_uRoot; }
    bool HasExtension(const char* szName) const {
        const auto cookie = xcb_query_extension(Get(), static_cast<u16>(std::strlen(szName)), szName);
        const auto pReply = Own(xcb_query_extension_reply(Get(), cookie, nullptr));
        return pReply && pReply->present;
    }

  private:
    std::unique_ptr<xcb_connection_t, Disconnect> m_pConnection;
    xcb_window_t m_uRoot = 0;
};

std::string Variable(const char* szName) {
    const char* const sz = std::getenv(szName);
    return sz ? sz : "";
}

// --- keys as the server numbers them ---

struct NamedSymbol {
    u32 uKey, uSymbol;
};
constexpr NamedSymbol c_astSymbols[] = {
    {kKeyHome, 0xff50},     {kKeyEnd, 0xff57},    {kKeyPageUp, 0xff55},
    {kKeyPageDown, 0xff56}, {kKeyInsert, 0xff63}, {kKeyDelete, 0xffff},
    {kKeyPause, 0xff13},    {kKeyPrint, 0xff61},  {kKeyScrollLock, 0xff14},
};
constexpr u32 c_uSymbolF1 = 0xffbe, c_uSymbolAlt = 0xffe9, c_uSymbolSuper = 0xffeb, c_uSymbolNumLock = 0xff7f,
              c_uSymbolScrollLock = 0xff14;

u32 SymbolOf(u32 uKey) {
    for (const NamedSymbol& st : c_astSymbols)
        if (st.uKey == uKey) return st.uSymbol;
    if (uKey >= kKeyF1) return c_uSymbolF1 + (uKey - kKeyF1);
    return uKey >= 'A' && uKey <= 'Z' ? uKey - 'A' + 'a' : uKey;
}

/// What the keyboard is now: which code makes which symbol, and which bit each modifier is.
class Keyboard {
  public:
    explicit Keyboard(xcb_connection_t* p) {
        const xcb_setup_t* const pSetup = xcb_get_setup(p);
        m_uFirst = pSetup->min_keycode;
        const u8 uCount = static_cast<u8>(pSetup->max_keycode - m_uFirst + 1);
        const auto cookie = xcb_get_keyboard_mapping(p, m_uFirst, uCount);
        const auto cookieModifiers = xcb_get_modifier_mapping(p);
        m_pSymbols = Own(xcb_get_keyboard_mapping_reply(p, cookie, nullptr));
        m_pModifiers = Own(xcb_get_modifier_mapping_reply(p, cookieModifiers, nullptr));
    }
    /// Codes with the symbol where it is typed most plainly.
    std::vector<xcb_keycode_t> CodesOf(u32 uSymbol) const {
        std::vector<xcb_keycode_t> listCodes;
        for (u32 uColumn = 0; uColumn < Columns() && listCodes.empty(); ++uColumn)
            for (u32 u = 0; u < Keys(); ++u)
                if (xcb_get_keyboard_mapping_keysyms(m_pSymbols.get())[u * Columns() + uColumn] == uSymbol)
                    listCodes.push_back(static_cast<xcb_keycode_t>(m_uFirst + u));
        return listCodes;
    }
    /// The modifier bit of a key, 0 if it has none.
    u16 BitOf(u32 uSymbol) const {
        if (!m_pModifiers) return 0;
        const auto listCodes = CodesOf(uSymbol);
        const u32 uEach = m_pModifiers->keycodes_per_modifier;
        const xcb_keycode_t* const pCodes = xcb_get_modifier_mapping_keycodes(m_pModifiers.get());
        for (u32 u = 0; u < 8 * uEach; ++u)
            if (std::find(listCodes.begin(), listCodes.end(), pCodes[u]) != listCodes.end() && pCodes[u] != 0)
                return static_cast<u16>(1u << (u / uEach));
        return 0;
    }

  private:
    u32 Columns() const { return m_pSymbols ? m_pSymbols->keysyms_per_keycode : 0; }
    u32 Keys() const {
        const int iSymbols = m_pSymbols ? xcb_get_keyboard_mapping_keysyms_length(m_pSymbols.get()) : 0;
        return Columns() != 0 ? static_cast<u32>(iSymbols) / Columns() : 0;
    }
    u8 m_uFirst = 0;
    std::unique_ptr<xcb_get_keyboard_mapping_reply_t, Free> m_pSymbols;
    std::unique_ptr<xcb_get_modifier_mapping_reply_t, Free> m_pModifiers;
};

struct Grab {
    u32 uId = 0;
    KeyCombination stKeys;
    std::vector<xcb_keycode_t> listCodes;
    u16 uModifiers = 0;
};

constexpr u16 c_uModifierBits = 0xFF; ///< of a key event's state; above them stand buttons

i64 Milliseconds() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

} // namespace

struct KeyListener::Memory {
    std::optional<Server> server;
    std::vector<Grab> listGrabs;
    std::vector<u16> listLocks;      ///< every set of locks that may be on beside a combination
    u16 uLocks = 0;                  ///< bits of all of them
    int aiStop[2] = {-1, -1};        ///< a pipe; a byte in it ends all waits
    xcb_timestamp_t auReleased[256]; ///< when each key was last let go

    Memory() {
        std::fill(std::begin(auReleased), std::end(auReleased), 0u);
        if (pipe2(aiStop, O_CLOEXEC | O_NONBLOCK) != 0) aiStop[0] = aiStop[1] = -1;
    }
    ~Memory() {
        for (const int i : aiStop)
            if (i >= 0) close(i);
    }
    xcb_connection_t* X() const { return server->Get(); }

    void FindLocks(const Keyboard& keyboard) {
        listLocks = {0};
        for (const u16 uBit : {u16{XCB_MOD_MASK_LOCK}, keyboard.BitOf(c_uSymbolNumLock),
                               keyboard.BitOf(c_uSymbolScrollLock)}) {
            const auto listBefore = listLocks;
            for (const u16 u : listBefore)
                if (uBit != 0 && (u & uBit) == 0) listLocks.push_back(static_cast<u16>(u | uBit));
        }
        uLocks = *std::max_element(listLocks.begin(), listLocks.end());
    }

    u16 BitsOf(const KeyCombination& st, const Keyboard& keyboard) const {
        const u16 uAlt = keyboard.BitOf(c_uSymbolAlt), uSuper = keyboard.BitOf(c_uSymbolSuper);
        u16 uBits = 0;
        if (st.bCtrl) uBits |= XCB_MOD_MASK_CONTROL;
        if (st.bShift) uBits |= XCB_MOD_MASK_SHIFT;
        if (st.bAlt) uBits |= uAlt != 0 ? uAlt : u16{XCB_MOD_MASK_1};
        if (st.bSuper) uBits |= uSuper != 0 ? uSuper : u16{XCB_MOD_MASK_4};
        return uBits;
    }

    /// With every set of locks, or with none at all.
    bool Take(const Grab& st) const {
        std::vector<xcb_void_cookie_t> listCookies;
        for (const xcb_keycode_t uCode : st.listCodes)
            for (const u16 u : listLocks)
                listCookies.push_back(xcb_grab_key_checked(X(), 1, server->Root(), st.uModifiers | u, uCode,
                                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        bool bAll = !listCookies.empty();
        for (const auto& cookie : listCookies) bAll = !Own(xcb_request_check(X(), cookie)) && bAll;
        if (!bAll) Leave(st);
        return bAll;
    }
    void Leave(const Grab& st) const {
        for (const xcb_keycode_t uCode : st.listCodes)
            for (const u16 u : listLocks) xcb_ungrab_key(X(), uCode, server->Root(), st.uModifiers | u);
    }

    Grab Make(u32 uId, const KeyCombination& stKeys, const Keyboard& keyboard) const {
        return {uId, stKeys, keyboard.CodesOf(SymbolOf(stKeys.uKey)), BitsOf(stKeys, keyboard)};
    }

    /// The keyboard has become another one: the same combinations lie elsewhere.
    void TakeAnew() {
        for (const Grab& st : listGrabs) Leave(st);
        const Keyboard keyboard(X());
        FindLocks(keyboard);
        for (Grab& st : listGrabs) st = Make(st.uId, st.stKeys, keyboard);
        for (const Grab& st : listGrabs) Take(st);
    }

    /// A key that is held down is let go and pressed again in one moment, as far as the server tells.
    bool IsPress(const xcb_key_press_event_t& st) { return auReleased[st.detail] != st.time; }

    std::optional<u32> IdOf(const xcb_key_press_event_t& stEvent) const {
        const u16 uBits = static_cast<u16>(stEvent.state & c_uModifierBits & ~uLocks);
        for (const Grab& st : listGrabs)
            if (st.uModifiers == uBits &&
                std::find(st.listCodes.begin(), st.listCodes.end(), stEvent.detail) != st.listCodes.end())
                return st.uId;
        return std::nullopt;
    }

    std::optional<u32> Look(const xcb_generic_event_t& stEvent) {
        const auto& stKey = reinterpret_cast<const xcb_key_press_event_t&>(stEvent);
        switch (stEvent.response_type & 0x7F) {
        case XCB_KEY_PRESS:
            return IsPress(stKey) ? IdOf(stKey) : std::nullopt;
        case XCB_KEY_RELEASE:
            auReleased[stKey.detail] = stKey.time;
            return std::nullopt;
        case XCB_MAPPING_NOTIFY:
            TakeAnew();
            return std::nullopt;
        default:
            return std::nullopt;
        }
    }
};

KeyListener::KeyListener() : m_pMemory(new Memory) {}
KeyListener::~KeyListener() { delete m_pMemory; }

Result KeyListener::Open() {
    if (SessionKeepsKeys())
        return Result::Fail("a Wayland session lets no program have keys that work everywhere");
    if (Variable("DISPLAY").empty()) return Result::Fail("there is no display to take keys from");
    if (m_pMemory->aiStop[0] < 0) return Result::Fail("too many files are open");
    m_pMemory->server.emplace();
    if (!*m_pMemory->server) return Result::Fail("cannot reach the X server " + Variable("DISPLAY"));
    m_pMemory->FindLocks(Keyboard(m_pMemory->X()));
    return {};
}

Result KeyListener::Add(u32 uId, const KeyCombination& stKeys) {
    const Grab st = m_pMemory->Make(uId, stKeys, Keyboard(m_pMemory->X()));
    if (st.listCodes.empty()) return Result::Fail("this keyboard has no such key");
    if (!m_pMemory->Take(st)) return Result::Fail("another program has these keys");
    m_pMemory->listGrabs.push_back(st);
    return {};
}

KeyEvent KeyListener::Wait(u32 uMilliseconds) {
    const i64 iEnd = Milliseconds() + uMilliseconds;
    pollfd ast[] = {{xcb_get_file_descriptor(m_pMemory->X()), POLLIN, 0}, {m_pMemory->aiStop[0], POLLIN, 0}};
    for (;;) {
        xcb_flush(m_pMemory->X());
        while (const auto pEvent = Own(xcb_poll_for_event(m_pMemory->X())))
            if (const auto uId = m_pMemory->Look(*pEvent)) return {KeyEvent::Kind::Pressed, *uId};
        if (xcb_connection_has_error(m_pMemory->X())) return {KeyEvent::Kind::Lost};
        const i64 iLeft = std::max<i64>(iEnd - Milliseconds(), 0);
        if (poll(ast, 2, static_cast<int>(iLeft)) == 0) return {};
        if (ast[1].revents != 0) return {KeyEvent::Kind::Stopped};
    }
}

void KeyListener::Stop() {
    const char cByte = 1;
    [[maybe_unused]] const ssize_t iWritten = write(m_pMemory->aiStop[1], &cByte, 1);
}

/// An X server that stands on Wayland sees the keys of its own windows alone.
bool SessionKeepsKeys() {
    if (Variable("XDG_SESSION_TYPE") == "wayland") return true;
    if (Variable("WAYLAND_DISPLAY").empty()) return false;
    const Server server;
    return !server || server.HasExtension("XWAYLAND");
}

// --- whose window has the keyboard ---

namespace {

// The question of the extension X-Resource whose process has made a window; its library is not needed for it.
struct IdSpec {
    u32 uResource, uMask;
};
struct IdRequest {
    u8 u8Major = 0, u8Minor = 4;
    u16 u16Length = 0;
    u32 uSpecs = 1;
    IdSpec st;
};
struct IdReply {
    u8 u8Response, u8Pad;
    u16 u16Sequence;
    u32 uLength, uIds, auPad[5];
    IdSpec stFirst;
    u32 uBytes, uValue;
};
constexpr u32 c_uMaskProcess = 2;

u32 ProcessByServer(const Server& server, xcb_window_t uWindow) {
    static xcb_extension_t s_stResource{"X-Resource", 0};
    const auto* const pThere = xcb_get_extension_data(server.Get(), &s_stResource);
    if (!pThere || !pThere->present) return 0;
    IdRequest stRequest{.st = {uWindow, c_uMaskProcess}};
    iovec ast[4] = {};
    ast[2] = {&stRequest, sizeof stRequest};
    const xcb_protocol_request_t stProtocol{1, &s_stResource, stRequest.u8Minor, 0};
    const unsigned uSequence = xcb_send_request(server.Get(), XCB_REQUEST_CHECKED, ast + 2, &stProtocol);
    xcb_generic_error_t* pError = nullptr;
    const auto pReply = Own(static_cast<IdReply*>(xcb_wait_for_reply(server.Get(), uSequence, &pError)));
    const auto pOwnedError = Own(pError);
    constexpr u32 c_uWords = (sizeof(IdReply) - 32) / 4;
    const bool bWhole = pReply && pReply->uIds >= 1 && pReply->uLength >= c_uWords && pReply->uBytes == 4;
    return bWhole ? pReply->uValue : 0;
}

u32 ProcessByProperty(const Server& server, xcb_window_t uWindow) {
    constexpr char c_szName[] = "_NET_WM_PID";
    const auto cookie = xcb_intern_atom(server.Get(), 1, sizeof c_szName - 1, c_szName);
    const auto pAtom = Own(xcb_intern_atom_reply(server.Get(), cookie, nullptr));
    if (!pAtom || pAtom->atom == XCB_ATOM_NONE) return 0;
    const auto cookieValue = xcb_get_property(server.Get(), 0, uWindow, pAtom->atom, XCB_ATOM_CARDINAL, 0, 1);
    const auto pValue = Own(xcb_get_property_reply(server.Get(), cookieValue, nullptr));
    if (!pValue || xcb_get_property_value_length(pValue.get()) != 4) return 0;
    return *static_cast<const u32*>(xcb_get_property_value(pValue.get()));
}

/// The window that gets keys; without a window of its own, that is the one below the pointer.
xcb_window_t FocusedWindow(const Server& server) {
    const auto pFocus =
        Own(xcb_get_input_focus_reply(server.Get(), xcb_get_input_focus(server.Get()), nullptr));
    if (!pFocus) return 0;
    if (pFocus->focus != XCB_INPUT_FOCUS_POINTER_ROOT && pFocus->focus != server.Root()) return pFocus->focus;
    const auto pPointer =
        Own(xcb_query_pointer_reply(server.Get(), xcb_query_pointer(server.Get(), server.Root()), nullptr));
    return pPointer ? pPointer->child : 0;
}

} // namespace

u32 FocusedProcess() {
    if (Variable("DISPLAY").empty()) return 0;
    const Server server;
    const xcb_window_t uWindow = server ? FocusedWindow(server) : 0;
    if (uWindow == 0) return 0;
    const u32 uProcess = ProcessByServer(server, uWindow);
    return uProcess != 0 ? uProcess : ProcessByProperty(server, uWindow);
}

} // namespace platform::tool
