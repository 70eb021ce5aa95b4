#pragma once
// Win32 pieces shared by the tool files of this folder: text conversion, waiting, message hooks on one
// program.
#include "platform/tool.h"
#include <map>
#include <string>
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace platform::tool {

std::wstring ToWide(const std::string& strText);
std::string FromWide(const wchar_t* wzText);
/// The system's words for an error code on one line, the number behind them.
std::string ErrorText(DWORD uError);

/// Quotes one word so that the usual parsers give it back unchanged.
std::wstring QuotedWord(const std::wstring& wzWord);
/// From now on Ctrl-C and its like do not end this program.
void OutliveStops();

/// Waits for one of two handles (the second may be null) while the thread's own messages are handled. True if
/// one was signalled, false after uMilliseconds.
bool WaitPumping(HANDLE hFirst, HANDLE hSecond, DWORD uMilliseconds);

/// Milliseconds between two looks at a program's threads: dense at first, when windows are made.
DWORD PollInterval(u32 uRound);

/// Holds one message hook a thread; all are removed with the object.
class ThreadHooks {
  public:
    ThreadHooks(DWORD uProcessId, const EnteringLibrary& stLibrary)
        : m_uProcessId(uProcessId), m_stLibrary(stLibrary) {}
    ~ThreadHooks();
    ThreadHooks(const ThreadHooks&) = delete;
    ThreadHooks& operator=(const ThreadHooks&) = delete;

    /// Hooks one thread; a thread that cannot be hooked yet is tried again by Refresh.
    void Add(DWORD uThreadId);
    /// Hooks the threads that came since, hands each its hook's handle, forgets ended ones.
    void Refresh();
    /// Sends an empty message to each thread that has not entered, so that an idle program fetches one.
    void Wake();
    size_t Count() const { return m_mapHooks.size(); }

  private:
    struct Entry {
        HHOOK hHook = nullptr;
        bool bHandedOver = false;
        bool bWoken = false;
    };
    void HandOver(DWORD uThreadId, Entry& stEntry);

    DWORD m_uProcessId;
    const EnteringLibrary& m_stLibrary;
    std::map<DWORD, Entry> m_mapHooks;
};

} // namespace platform::tool
