#include "draw/kept_programs.h"

#include "draw/own_context.h"
#include "platform/gl_api.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

namespace {

struct stKept {
    std::string strSources;
    std::unique_ptr<GLProgram> pProgram;
    bool bHeld; ///< by a batcher
};

/// More than a layout has; beyond it nothing is kept.
constexpr std::size_t g_uMostKept = 24;

/// All are of one context: that of the last one made. The handle tells of its end, from any thread.
struct stKeptPrograms {
    std::vector<stKept> list;
    std::atomic<platform::ContextHandle> hContext = nullptr;
};

/// Never destroyed: the host may still draw while the process ends.
stKeptPrograms& All() {
    static auto* const p = new stKeptPrograms;
    return *p;
}

bool IsContextCurrent() {
    const platform::ContextHandle hCurrent = platform::CurrentContext();
    return hCurrent && hCurrent == All().hContext && g_fnMayDeleteNames();
}

/// Some ends of contexts are seen by nobody, and a new context may have the handle of an old one.
bool IsOurs(const GLProgram& program) {
    return glIsProgram(program.m_fnGetObject()) && program.m_fnUniform("mProj") >= 0;
}

void EraseUnheld() {
    std::erase_if(All().list, [](const stKept& st) { return !st.bHeld; });
}

/// Those of another context are its own affair: their names mean nothing here.
void ForgetUnheld() {
    for (stKept& st : All().list)
        if (!st.bHeld) st.pProgram->m_fnForget();
    EraseUnheld();
}

/// A driver gives a name twice only if its first object is gone, with a context whose end nobody saw.
void ForgetName(u32 uObject) {
    std::erase_if(All().list, [=](stKept& st) {
        const bool bStale = !st.bHeld && st.pProgram->m_fnGetObject() == uObject;
        if (bStale) st.pProgram->m_fnForget();
        return bStale;
    });
}

auto Find(const GLProgram* pProgram) {
    return std::ranges::find_if(All().list, [=](const stKept& st) { return st.pProgram.get() == pProgram; });
}

} // namespace

void stKeepProgram::operator()(GLProgram* pProgram) const noexcept {
    const auto it = Find(pProgram);
    if (it == All().list.end()) {
        delete pProgram;
        return;
    }
    it->bHeld = false;
    if (!IsContextCurrent()) All().list.erase(it);
}

KeptProgram g_fnTakeKeptProgram(const std::string& strSources) {
    if (!IsContextCurrent()) return nullptr;
    const auto it = std::ranges::find_if(
        All().list, [&](const stKept& st) { return !st.bHeld && st.strSources == strSources; });
    if (it == All().list.end()) return nullptr;
    if (!IsOurs(*it->pProgram)) {
        ForgetUnheld();
        return nullptr;
    }
    it->bHeld = true;
    return KeptProgram(it->pProgram.get());
}

KeptProgram g_fnMakeKept(std::unique_ptr<GLProgram> pProgram, std::string strSources) {
    stKeptPrograms& all = All();
    if (all.hContext.exchange(platform::CurrentContext()) != platform::CurrentContext()) ForgetUnheld();
    ForgetName(pProgram->m_fnGetObject());
    if (all.list.size() >= g_uMostKept) EraseUnheld();
    if (all.list.size() >= g_uMostKept) return KeptProgram(pProgram.release());
    all.list.push_back({std::move(strSources), std::move(pProgram), true});
    return KeptProgram(all.list.back().pProgram.get());
}

void g_fnDeleteKeptPrograms() noexcept {
    if (IsContextCurrent())
        EraseUnheld();
    else
        ForgetUnheld();
}

void g_fnForgetKeptPrograms(platform::ContextHandle hContext) noexcept {
    if (!hContext || All().hContext == hContext) All().hContext = nullptr;
}
