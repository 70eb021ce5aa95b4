#pragma once
// Keys that work whatever window has the keyboard, by the system's own registration. In tools only, never in
// a game. One implementation a system.
#include "platform/tool_result.h"
#include "platform/types.h"

namespace platform::tool {

/// Kinds of keys besides letters and digits, which stand for themselves as ASCII.
enum KeyCode : u32 {
    kKeyF1 = 0x100, ///< to F24 = kKeyF1 + 23
    kKeyHome = 0x200,
    kKeyEnd,
    kKeyPageUp,
    kKeyPageDown,
    kKeyInsert,
    kKeyDelete,
    kKeyPause,
    kKeyScrollLock,
    kKeyPrint
};
constexpr u32 g_uFunctionKeys = 24;

struct KeyCombination {
    bool bCtrl = false, bAlt = false, bShift = false, bSuper = false;
    u32 uKey = 0; ///< a capital letter, a digit, or a KeyCode
    bool operator==(const KeyCombination&) const = default;
};

struct KeyEvent {
    enum class Kind {
        None,    ///< the time is over
        Pressed, ///< uId: of the combination
        Stopped, ///< by Stop
        Lost     ///< the system tells of keys no more
    } eKind = Kind::None;
    u32 uId = 0;
};

/// Listens to combinations while it lives. One thread opens, adds and waits; Stop is any thread's.
class KeyListener {
  public:
    KeyListener();
    KeyListener(const KeyListener&) = delete;
    KeyListener& operator=(const KeyListener&) = delete;
    ~KeyListener();
    /// Why no keys can be listened to in this session; success if they can.
    Result Open();
    /// Takes a combination, told by uId later. Fails if somebody else has it, or there is no such key.
    Result Add(u32 uId, const KeyCombination& stKeys);
    /// The next press; a key that is held down counts once.
    KeyEvent Wait(u32 uMilliseconds);
    /// Ends this wait and all later ones.
    void Stop();

  private:
    struct Memory;
    Memory* m_pMemory;
};

/// True in a session whose system gives no program the keys of others.
bool SessionKeepsKeys();
/// The process whose window has the keyboard; 0 where the system does not tell.
u32 FocusedProcess();

} // namespace platform::tool
