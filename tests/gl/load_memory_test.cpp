// What loads keep of the heap, counted without a graphics driver, which would keep some of its own.
#include "frame/layout.h"
#include "platform/headless/test_controls.h"
#include "platform/segment.h"
#include "platform/shared_block.h"
#include "tests/support/heap_bytes.h"
#include "tests/unit/config/custom_fixture.h"

#include <algorithm>

namespace headless = platform::headless;

namespace {

class LoadMemory : public CustomTest {
  protected:
    void TearDown() override {
        CustomTest::TearDown();
        headless::ResetAll();
    }
    /// The test back-end without its records of calls.
    void Forget() {
        headless::ResetAll();
        const std::string strData = m_folder.Path("");
        headless::SetCommonDataFolder(strData.substr(0, strData.find("/ZARN/")));
        std::copy_n(u"Mine", 5, platform::SharedSegment()->wzGlobalProfile);
    }
    /// One load and the release of all it made; false if the load failed.
    bool LoadAndRelease() {
        Forget();
        const bool bLoaded = g_fnMakeLayout();
        g_fnClearUpdateLists();
        StartOver();
        return bLoaded;
    }
    void Profile(const std::string& strItems) {
        m_folder.Write("Profiles/Mine/OSD.xml", "<OSD LayoutStyle='2'><CustomLayout><Settings><Info>" +
                                                    strItems + "</Info></Settings></CustomLayout></OSD>");
    }
    /// Bytes that so many more loads add, after some to get warm.
    i64 Growth(bool bSucceeds) {
        for (u32 u = 0; u < 50; ++u) EXPECT_EQ(LoadAndRelease(), bSucceeds);
        const auto uBefore = static_cast<i64>(HeapBytes());
        for (u32 u = 0; u < 300; ++u) EXPECT_EQ(LoadAndRelease(), bSucceeds);
        return static_cast<i64>(HeapBytes()) - uBefore;
    }
    /// The smallest thing that could stay behind with each load, a map's node, would add up to more.
    static constexpr i64 c_iSlack = 300 * 40;
};

TEST_F(LoadMemory, ThreeHundredLoadsOfEveryKindOfItemKeepNothing) {
    m_folder.Write("OSD_Ref.xml", "<OSD><Preset><Variable Name='Face' Value='150'/></Preset></OSD>");
    m_folder.Write("Profiles/Mine/m.txt", "memo");
    const std::string strSize = "ContentSizeW='40' ContentSizeH='40' ";
    Profile(Text("t") + Item("Memo", "m", "FontName='Face' FileName='m.txt'") + Number("n@p", "FPS") +
            Number("c", "SYSTEM_TIME") + Number("r", "RESOLUTION") + Item("Panel", "p", "PanelType='2'") +
            Item("Image", "i", "ImageFileName='a.png'") + Text("lost@nobody") +
            Item("LineGraph", "l", "DataFullName='FPS' DataNum='9' " + strSize) +
            Item("PieChart", "q", "DataFullName='FPS' EndDegree='90' " + strSize));
    g_fnLogSink = nullptr;
    EXPECT_LT(Growth(true), c_iSlack);
}

TEST_F(LoadMemory, ThreeHundredFailedLoadsKeepNothing) {
    m_folder.Write("OSD_Ref.xml", "<OSD/>");
    m_folder.Write("Profiles/Mine/m.txt", "");
    g_fnLogSink = nullptr;
    Profile(Text("t") + Item("Panel", "p") + Item("Memo", "m", "FontName='Face' FileName='m.txt'"));
    EXPECT_LT(Growth(false), c_iSlack);
    Profile("<Panel");
    EXPECT_LT(Growth(false), c_iSlack);
}

} // namespace
