#pragma once
// 'keys': listening to combinations of keys and doing what they stand for.
#include "companion/keys/actions.h"
#include "companion/options.h"
#include "platform/tool_keys.h"
#include <atomic>
#include <string>
#include <thread>
#include <utility>

namespace companion::keys {

/// Listens on a thread of its own while it lives. Each press runs a command in a process of its own, one
/// after the other; a recording that was begun so ends with this.
class KeyService {
  public:
    /// strLibrary: what commands are given with --library; empty: nothing. bBeside: something else goes on
    /// when this cannot, so it tells of that.
    explicit KeyService(std::string strLibrary, bool bBeside = false)
        : m_strLibrary(std::move(strLibrary)), m_bBeside(bBeside) {}
    KeyService(const KeyService&) = delete;
    KeyService& operator=(const KeyService&) = delete;
    ~KeyService();
    /// Takes the keys of the settings and says which; what is amiss with single ones is a line on standard
    /// error. Fails if none can be listened to. Once.
    Result Start();
    /// False once the system tells of keys no more.
    bool IsListening() const { return m_bListening; }

  private:
    Result TakeKeys();
    void Run();
    void Press(const Action& stAction);
    void LookAtRecording();

    const std::string m_strLibrary;
    const bool m_bBeside;
    platform::tool::KeyListener m_listener;
    bool m_bRecording = false; ///< one that a key began runs
    std::atomic<bool> m_bListening{false};
    std::thread m_thread;
};

/// 'keys' until a stop.
Result Listen(const std::string& strLibrary);
/// 'keys do'.
Result Do(const ControlLibrary& stLibrary, const Options& stOptions);
/// 'keys --list'.
Result PrintKeys(bool bJson);

/// Whether this session lets any program have keys of others.
bool CanListen();
/// Where it does not: what to do instead, and a failure.
Result TellWhyNot();

} // namespace companion::keys
