#include "companion/keys/keys.h"
#include "companion/config.h"
#include "companion/keys/combination.h"
#include "companion/keys/key_recording.h"
#include "companion/segment_json.h"
#include "companion/table.h"
#include "companion/utf.h"
#include "platform/tool_again.h"
#include <cstdio>
#include <future>
#include <nlohmann/json.hpp>

namespace companion::keys {
namespace {

using Json = nlohmann::ordered_json;
using platform::tool::KeyEvent;

constexpr u32 c_uLook = 1000; ///< milliseconds between two looks at a recording
constexpr u32 c_uIdle = 60000;
constexpr const char* c_szNone = "none";
constexpr const char* c_szLost = "the system tells of keys no more";

void Print(const std::string& strText) {
    std::fwrite(strText.data(), 1, strText.size(), stdout);
    std::fflush(stdout);
}

void Complain(const std::string& strText) {
    std::fprintf(stderr, "orvin-osd: %s\n", Printable(strText).c_str());
}

/// Two actions of the settings that have the same keys: the first one keeps them.
bool IsTakenBefore(const Action& stAction, const std::string& strKeys) {
    for (const Action& st : Actions()) {
        if (&st == &stAction) return false;
        if (SettingNow(st.szSetting) == strKeys) return true;
    }
    return false;
}

std::string Change(const Action& st) {
    return std::string("; 'orvin-osd config ") + st.szSetting + " KEYS' chooses others";
}

} // namespace

KeyService::~KeyService() {
    m_listener.Stop();
    if (m_thread.joinable()) m_thread.join();
}

Result KeyService::TakeKeys() {
    Result stFault = m_listener.Open();
    if (!stFault) return stFault;
    bool bAny = false, bWanted = false;
    for (u32 u = 0; u < Actions().size(); ++u) {
        const Action& st = Actions()[u];
        const std::string strKeys = SettingNow(st.szSetting);
        KeyCombination stKeys;
        if (!ParseCombination(strKeys, stKeys)) continue; // "none"
        bWanted = true;
        const Result stTaken = IsTakenBefore(st, strKeys) ? Result::Fail("another action has these keys")
                                                          : m_listener.Add(u, stKeys);
        if (stTaken) Print(strKeys + ": " + st.szHelp + "\n");
        if (!stTaken) Complain(strKeys + " (" + st.szName + "): " + stTaken.strError + Change(st));
        bAny = bAny || stTaken;
    }
    if (!bWanted) return Result::NotFound("no keys are set; 'orvin-osd keys --list' shows the settings");
    return bAny ? Result{} : Result::Fail("none of the keys can be listened to");
}

Result KeyService::Start() {
    std::promise<Result> promise;
    auto future = promise.get_future();
    m_thread = std::thread([this, &promise] {
        const Result st = TakeKeys(); // by the thread that waits for them
        m_bListening = static_cast<bool>(st);
        promise.set_value(st);
        if (st) Run();
    });
    return future.get();
}

void KeyService::Run() {
    KeyEvent st;
    do {
        st = m_listener.Wait(m_bRecording ? c_uLook : c_uIdle);
        if (st.eKind == KeyEvent::Kind::Pressed) Press(Actions()[st.uId]);
        LookAtRecording();
    } while (st.eKind == KeyEvent::Kind::None || st.eKind == KeyEvent::Kind::Pressed);
    if (m_bBeside && st.eKind == KeyEvent::Kind::Lost) Complain(c_szLost);
    m_bListening = false;
    if (!m_bRecording) return;
    const Result stEnded = EndRecording();
    if (!stEnded) Complain(stEnded.strError);
}

void KeyService::Press(const Action& stAction) {
    std::vector<std::string> listWords{"keys", "do", stAction.szName};
    if (!m_strLibrary.empty()) listWords.insert(listWords.end(), {"--library", m_strLibrary});
    int iExitCode = 0; // the command tells by itself what went wrong
    const Result st = platform::tool::RunAgain(listWords, iExitCode);
    if (!st) Complain(st.strError);
    if (std::string_view(stAction.szName) == "record") m_bRecording = IsRecording();
}

/// One whose program has ended ends without a key.
void KeyService::LookAtRecording() {
    if (!m_bRecording || IsRecording()) return;
    m_bRecording = false;
    Print(Printable(LastRecordingText()) + "\n");
}

Result Listen(const std::string& strLibrary) {
    platform::tool::CatchStop();
    KeyService service(strLibrary);
    const Result st = service.Start();
    if (!st) return st;
    Print("listening; end with Ctrl-C\n");
    while (service.IsListening())
        if (platform::tool::WaitForStop(c_uLook)) return {};
    return Result::Fail(c_szLost);
}

Result Do(const ControlLibrary& stLibrary, const Options& stOptions) {
    return FindAction(stOptions.strTarget)->fnDo(stLibrary, stOptions.strLibrary);
}

Result PrintKeys(bool bJson) {
    Json jsRows = Json::array();
    std::vector<std::vector<std::string>> listRows;
    for (const Action& st : Actions()) {
        const std::string strKeys = SettingNow(st.szSetting);
        jsRows.push_back({{"action", st.szName},
                          {"keys", strKeys == c_szNone ? Json(nullptr) : Json(strKeys)},
                          {"setting", st.szSetting},
                          {"command", CommandOf(st)},
                          {"help", st.szHelp}});
        listRows.push_back({st.szName, strKeys, st.szSetting, CommandOf(st), st.szHelp});
    }
    Print(bJson ? JsonToText(jsRows)
                : FormatTable({{"ACTION"}, {"KEYS"}, {"SETTING"}, {"COMMAND"}, {"WHAT IT DOES"}}, listRows));
    return {};
}

bool CanListen() { return !platform::tool::SessionKeepsKeys(); }

Result TellWhyNot() {
    std::string strText = "Bind these commands to keys in the settings of your desktop:\n";
    for (const Action& st : Actions()) strText += "  " + CommandOf(st) + "\n";
    Print(strText);
    return Result::Fail("in a Wayland session no program can have keys that work everywhere");
}

} // namespace companion::keys
