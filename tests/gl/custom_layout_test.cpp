// The custom layout in a real context: what a profile's file says is what stands on the picture. The canvas
// is as high as it is always, so on a picture of 1080 rows a unit is a pixel.
#include "controls/osd_manager.h"
#include "draw/draw_keys.h"
#include "frame/canvas.h"
#include "frame/frame_driver.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#include "tests/gl/profile_fixture.h"

namespace headless = platform::headless;

namespace {

constexpr u32 g_uWidth = 960, g_uHeight = 540;

class CustomLayout : public ProfileFixture {
  protected:
    static void Clear() {
        glClearColor(0.2f, 0.4f, 0.6f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    /// The picture of the profile "Own" in its second frame.
    Picture Show(const std::string& strItems, const std::string& strSettings = "") {
        WriteProfile("Own", strItems, strSettings);
        if (!Begin(true, u"Own", g_uWidth, g_uHeight) || !RunUntilBuilt()) return {};
        Clear();
        return Frame();
    }
};

TEST_F(CustomLayout, FirstLook) {
    const Picture picture = Show(
        "<Panel Name='P' IsShow='1' FrameSizeW='400' FrameSizeH='200' FrameAnchorX='40' FrameAnchorY='40' "
        "ContentSizeW='400' ContentSizeH='200' PanelColorR='200' PanelColorG='20' PanelColorB='20'/>"
        "<TextBox Name='T' IsShow='1' FrameAnchorX='60' FrameAnchorY='60' FrameSizeW='300' FrameSizeH='60' "
        "Text='Hello' FontName='DejaVu Sans' TextSize='48'/>"
        "<NumBox Name='N' IsShow='1' FrameAnchorX='60' FrameAnchorY='140' FrameSizeW='300' FrameSizeH='60' "
        "DataFullName='FPS' FontName='DejaVu Sans' TextSize='48'/>"
        "<NumBox Name='C' IsShow='1' FrameAnchorX='500' FrameAnchorY='140' FrameSizeW='300' FrameSizeH='60' "
        "DataFullName='SYSTEM_TIME' FontName='DejaVu Sans' TextSize='48'/>");
    ASSERT_FALSE(picture.aBytes.empty());
    picture.Save("custom_first");
}

} // namespace
