#include "companion/utf.h"
#include "platform/tool.h"
#include "tools/profile/background.h"
#include "tools/profile/program.h"
#include "tools/profile/renderer.h"
#include "tools/profile/stage.h"
#include <cstdio>

namespace companion {
namespace {

constexpr double kDefaultSeconds = 60.0;
constexpr u32 kLookInterval = 200; ///< milliseconds between two looks at the profile's files

/// All that a picture is made of; files are read anew for each picture.
struct Work {
    const Options& stOptions;
    std::filesystem::path pathData;
    ProfilePlace stProfile;
    Stage stage;
};

Result DrawOnce(Work& st) {
    const ProfileOptions& stWish = st.stOptions.stProfile;
    RenderPlan stPlan;
    ValueSource values;
    Result stResult = st.stage.Prepare(st.pathData, st.stProfile);
    if (stResult)
        stResult = MakeBackground(stWish.strBackground, stWish.uWidth, stWish.uHeight, stPlan.background);
    if (stResult) stResult = values.Open(stWish.strValues, st.stOptions.strLibrary);
    if (!stResult) return stResult;
    stPlan.pathCommon = st.stage.CommonFolder();
    stPlan.pathSettings = st.pathData;
    stPlan.bSettingsNamed = !stWish.strData.empty();
    stPlan.strProfile = st.stProfile.strName;
    stPlan.pValues = &values;
    stPlan.uFrames = stWish.uFrames;
    stPlan.dSeconds = stWish.fSeconds > 0 ? stWish.fSeconds : kDefaultSeconds;
    stPlan.bVerbose = stWish.bVerbose;
    Picture picture;
    RenderTimes stTimes;
    stResult = RenderProfile(
        stPlan, [] { return platform::tool::WaitForStop(0); }, picture, stTimes);
    if (stResult) stResult = WritePicture(stWish.strOutput, picture);
    if (stResult && stWish.bTimes)
        std::printf("first frame %.1f ms, second %.1f ms, %u frames\n", stTimes.dFirstFrame,
                    stTimes.dSecondFrame, stTimes.uFrames);
    return stResult;
}

void Say(const std::string& strLine) {
    std::printf("%s\n", Printable(strLine).c_str());
    std::fflush(stdout);
}

/// Waits for the files to change and then to stay as they are for one look, since an editor may write in
/// several steps. False when a stop was asked for.
bool WaitForChange(const std::filesystem::path& pathFolder, std::vector<FileStamp>& listSeen) {
    bool bChanged = false;
    for (;;) {
        if (platform::tool::WaitForStop(kLookInterval)) return false;
        std::vector<FileStamp> listNow = LookAt(pathFolder);
        const bool bSame = listNow == listSeen;
        if (bSame && bChanged) return true;
        bChanged = bChanged || !bSame;
        listSeen = std::move(listNow);
    }
}

Result WatchProfile(Work& st) {
    const std::string& strOutput = st.stOptions.stProfile.strOutput;
    std::vector<FileStamp> listSeen = LookAt(st.stProfile.pathFolder);
    for (;;) {
        const Result stDrawn = DrawOnce(st);
        if (platform::tool::WaitForStop(0)) return {};
        if (stDrawn)
            Say("drew " + strOutput);
        else
            std::fprintf(stderr, "orvin-osd: %s\n", Printable(stDrawn.strError).c_str());
        if (!WaitForChange(st.stProfile.pathFolder, listSeen)) return {};
    }
}

} // namespace

Result RenderCommand(const Options& stOptions, int& iExitCode) {
    Work st{stOptions, {}, {}, {}};
    const ProfileOptions& stWish = stOptions.stProfile;
    Result stResult = FindDataFolder(stWish.strData, st.pathData);
    if (stResult) stResult = FindProfile(st.pathData, stWish.strProfile, st.stProfile);
    if (!stResult) return stResult;
    platform::tool::CatchStop(); // so that the folder of a moment is removed in any case
    if (stWish.bWatch) return WatchProfile(st);
    stResult = DrawOnce(st);
    if (platform::tool::WaitForStop(0)) iExitCode = kFailed;
    return platform::tool::WaitForStop(0) ? Result{} : stResult;
}

} // namespace companion
