// The merged flavour against the OpenGL flavour: the same controls, the same changes, the same pixels.
#include "base/timer.h"
#include "batch/draw_text.h"
#include "controls/flip_box.h"
#include "controls/img_box.h"
#include "controls/line_graph.h"
#include "controls/num_box.h"
#include "controls/pie_chart.h"
#include "controls/text_box.h"
#include "controls/video_box.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/creation_table.h"
#include "draw/saved_state.h"
#include "font/font_unicode.h"
#include "frame/state_guard.h"
#include "merged/draw_basic_merged.h"
#include "merged/flavour_merged.h"
#include "platform/gl_api.h"
#include "tests/gl/draw_fixture.h"
#include "tests/support/gif_maker.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/picture_files.h"

#include <algorithm>
#include <random>

namespace {

using Color = std::array<f32, 4>;
using Calls = std::vector<std::string>;

/// One flavour with its own controls.
struct stWorld {
    COSDManager manager;
    stCreationTable table;
    std::unique_ptr<CDrawBasic_Base> pBasic;
    std::unique_ptr<CDrawText_Base> pText;
    std::vector<std::unique_ptr<CPanel_Base>> aPanels;
    std::vector<std::unique_ptr<CLineGraph_Base>> aGraphs;
    std::vector<std::unique_ptr<CPieChart_Base>> aPies;
    std::vector<std::unique_ptr<CVideoBox_Base>> aVideos;
    std::vector<std::unique_ptr<CTextBox_Base>> aTexts;
    std::vector<std::unique_ptr<CNumBox_Base>> aNumbers;
    std::vector<std::unique_ptr<CImgBox_Base>> aImages;
    std::vector<std::unique_ptr<CFlipBox_Base>> aFlips;

    void Clear() {
        manager.m_fnStartOver();
        aPanels.clear();
        aGraphs.clear();
        aPies.clear();
        aVideos.clear();
        aTexts.clear();
        aNumbers.clear();
        aImages.clear();
        aFlips.clear();
    }
};

class MergedDraw : public DrawFixture {
  protected:
    void SetUp() override {
        DrawFixture::SetUp();
        GLSavedState.TemporaryVertexArray = m_uVertexArray; // as the state guard would have it
        g_mapBlurDiameters = {{6, 1}, {30, 1}};
        m_astWorlds[0].table = g_stCreationTable;
        g_fnFillCreationTable_Merged();
        m_astWorlds[1].table = g_stCreationTable;
        Both([](stWorld& world) {
            world.manager.m_fnStartOver();
            world.pBasic.reset(g_stCreationTable.m_fnCreateDrawBasic());
            world.pText.reset(g_stCreationTable.m_fnCreateDrawText());
            ASSERT_TRUE(world.pBasic->m_fnInitialize());
            ASSERT_TRUE(world.pText->m_fnInitialize());
        });
        ASSERT_TRUE(dynamic_cast<CDrawBasic_Merged*>(m_astWorlds[1].pBasic.get()));
        for (const char16_t* wzFace : {u"DejaVu Sans", u"DejaVu Serif"}) AddFont(wzFace);
    }
    void TearDown() override {
        for (stWorld& world : m_astWorlds) {
            g_pOSDManager = &world.manager;
            world.pText.reset();
            world.pBasic.reset();
            world.Clear();
        }
        m_apFonts.clear();
        GLSavedState = {};
        g_bTextGlow = false;
        g_fLastFrameSeconds = 0;
        DrawFixture::TearDown();
    }
    template <class Action> void Both(Action fnAction) {
        for (stWorld& world : m_astWorlds) {
            g_stCreationTable = world.table;
            g_pOSDManager = &world.manager;
            fnAction(world);
        }
    }
    void AddFont(const char16_t* wzFace) {
        CFontUniCode& font = *m_apFonts.emplace_back(m_astWorlds[1].table.m_fnCreateFont());
        font.m_fnSetLayout(8, 8, 0);
        font.m_fnSetTexSize(512, 512);
        font.m_fnSetFontName(wzFace);
        font.m_fnSetFontWeight(400);
        ASSERT_TRUE(font.m_fnInitialize(false));
    }
    /// What a flavour draws over the backdrop.
    Picture DrawWorld(stWorld& world) {
        g_pOSDManager = &world.manager;
        PutBackdrop(m_backdrop);
        static_cast<CDraw_Base*>(world.pBasic.get())->m_fnRender();
        static_cast<CDraw_Base*>(world.pText.get())->m_fnRender();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        return Read();
    }
    ::testing::AssertionResult SamePictures() {
        const Picture expected = DrawWorld(m_astWorlds[0]), actual = DrawWorld(m_astWorlds[1]);
        if (actual.aBytes == expected.aBytes) {
            m_uDrawn += expected.aBytes != m_backdrop.aBytes;
            return ::testing::AssertionSuccess();
        }
        expected.Save("merged-expected");
        actual.Save("merged-actual");
        const auto it = std::mismatch(actual.aBytes.begin(), actual.aBytes.end(), expected.aBytes.begin());
        const auto uPixel = static_cast<u32>(it.first - actual.aBytes.begin()) / 4;
        return ::testing::AssertionFailure() << "first at " << uPixel % s_uWidth << ", " << uPixel / s_uWidth;
    }
    /// The calls of a frame of the merged flavour.
    Calls FrameCalls() {
        stWorld& world = m_astWorlds[1];
        g_pOSDManager = &world.manager;
        gl_recorder::Install();
        gl_recorder::Start();
        static_cast<CDraw_Base*>(world.pBasic.get())->m_fnRender();
        static_cast<CDraw_Base*>(world.pText.get())->m_fnRender();
        return gl_recorder::Stop();
    }

    static std::ptrdiff_t CountDraws(const Calls& calls) {
        return std::ranges::count_if(calls, [](const auto& s) { return s.starts_with("glDraw"); });
    }

    stWorld m_astWorlds[2];
    std::vector<std::unique_ptr<CFontUniCode>> m_apFonts;
    const Picture m_backdrop = MakeBackdrop(s_uWidth, s_uHeight);
    u32 m_uDrawn = 0; ///< comparisons in which something was drawn
};

/// Layouts of a seed, and changes to them.
class MergedRandom : public MergedDraw {
  protected:
    u32 Pick(u32 uBelow) { return static_cast<u32>(m_random() % uBelow); }
    bool Chance(u32 uPercent) { return Pick(100) < uPercent; }
    f32 Range(f32 fFrom, f32 fTo) {
        return fFrom + (fTo - fFrom) * static_cast<f32>(m_random() % 10007) / 10007.0f;
    }
    Color RandomColor() {
        const f32 afAlpha[] = {0, 1, Range(0, 1), Range(0, 1)};
        return {Range(0, 1), Range(0, 1), Range(0, 1), afAlpha[Pick(4)]};
    }
    /// Still pictures with and without alpha, and animations of two and five frames.
    void WritePictures() const {
        m_folder.Write("0", picture_files::Bmp(7, 5, [](u32 x, u32 y) { return x * 0x201003 + y * 0x40; }));
        m_folder.Write("1", picture_files::Png(33, 64, [](u32 x, u32 y) {
                           return (x * y % 256) << 24 | x * 0x0705 | y * 0x30000;
                       }));
        CGifMaker two(20, 10), five(12, 12);
        for (u32 u = 0; u < 2; ++u)
            two.Control(static_cast<int>(2 + u), 1)
                .Frame(0, 0, 20, 10, std::string(200, static_cast<char>('A' + u)));
        for (u32 u = 0; u < 5; ++u)
            five.Control(1, 2, 1).Frame(2, 2, 8, 8, std::string(64, static_cast<char>('A' + u % 4)));
        m_folder.Write("2", two.File());
        m_folder.Write("3", five.File());
    }
    void AddImages(u32 uCount) {
        static const char16_t* const awzFiles[] = {u"0", u"1", u"2", u"3", u""};
        for (u32 u = 0; u < uCount; ++u) {
            const u32 uFile = Pick(5);
            const f32 w = Range(0, 160), h = Range(1, 120), fDegrees = Range(-400, 400);
            const i32 iCode = static_cast<i32>(Pick(12)) - 1;
            const bool bTilted = Chance(50), bShown = Chance(90);
            const Color color = RandomColor();
            Both([&](stWorld& world) {
                CImgBox_Base& box = *world.aImages.emplace_back(new CImgBox_Base);
                box.m_fnSetColorF(color[0], color[1], color[2], color[3]);
                box.m_fnSetBoxSize(w + 1, h);
                box.m_fnSetAnchor(iCode, 0, 0);
                box.m_fnSetImageFile(awzFiles[uFile], false);
                box.m_fnSetTilted(bTilted);
                box.m_fnSetTiltDegree(fDegrees);
                EXPECT_TRUE(box.m_fnInitialize());
                box.m_fnSetRenderable(bShown);
            });
            Place(&stWorld::aImages, g_uLayerTexture);
        }
    }
    void ChangeImage(u32 u) {
        static const char16_t* const awzFiles[] = {u"3", u"1", u"missing"};
        const u32 uHow = Pick(8), uFile = Pick(3), uFrame = Pick(6);
        const f32 w = Range(1, 160), h = Range(1, 120), x = Range(-40, 300), y = Range(-30, 190);
        const Color color = RandomColor();
        Both([&](stWorld& world) {
            CImgBox_Base& box = *world.aImages[u];
            if (uHow == 0) box.m_fnSetColorF(color[0], color[1], color[2], color[3]);
            if (uHow == 1) box.m_fnMoveTo(x, y, 0);
            if (uHow == 2) box.m_fnSetBoxSize(w, h);
            if (uHow == 3) box.m_fnSetTiltDegree(x);
            if (uHow == 4) box.m_fnSetImageFile(awzFiles[uFile], false);
            if (uHow == 5 && box.m_pTexture) box.m_pTexture->m_fnSetCurrentFrame(uFrame);
            if (uHow == 6) world.manager.m_fnDetach(&box, g_uLayerTexture);
            if (uHow == 7) world.manager.m_fnAttachFront(&box, g_uLayerTexture);
            if (uHow >= 2 && uHow <= 4) box.m_fnRebuild();
        });
    }
    static u32 LayerOf(const void* pKey) { return pKey == g_keyColorList ? g_uLayerColor : g_uLayerBlur; }
    /// Places by hand or in the tree, and shows at one end of the list.
    template <class List> void Place(List stWorld::*pList, u32 uLayer) {
        const f32 x = Range(-40, 300), y = Range(-30, 190), z = Chance(20) ? 0.25f : 0;
        const bool bFront = Chance(20), bTree = Chance(40);
        const i32 iCode = static_cast<i32>(Pick(19)) - 9;
        const u32 uParent = Pick(8);
        Both([&](stWorld& world) {
            CControl& control = *(world.*pList).back();
            if (bTree) {
                CControl* pParent = uParent < world.aPanels.size() ? world.aPanels[uParent].get() : nullptr;
                if (pParent == &control) pParent = nullptr;
                world.manager.m_fnAddChild(pParent, &control);
                control.m_fnSetAnchor(iCode, x / 4, y / 4);
            } else {
                control.m_fnSetPosition(x, y, z);
            }
            if (bFront)
                world.manager.m_fnAttachFront(&control, uLayer);
            else
                world.manager.m_fnAttachBack(&control, uLayer);
        });
    }
    void AddPanels(u32 uCount) {
        for (u32 u = 0; u < uCount; ++u) {
            const u32 uShape = Pick(3), uKey = Pick(10);
            const f32 w = Range(1, 160), h = Range(1, 120), e = Range(0, 8), t = Range(1, 20),
                      c = Range(1, 20);
            const DrawKey pKey = uKey == 0   ? g_keyBlurByDiameter[6]
                                 : uKey == 1 ? g_keyBlurList
                                             : g_keyColorList;
            const Color color = RandomColor();
            const bool bShown = Chance(90);
            Both([&](stWorld& world) {
                CPanel_Base& panel = *world.aPanels.emplace_back(g_stCreationTable.m_fnCreatePanel());
                panel.m_fnSetShape(uShape);
                panel.m_fnSetGeometry5(w, h, e, t, c);
                panel.m_fnSetColorF(color[0], color[1], color[2], color[3]);
                panel.m_fnSetDrawKey(pKey);
                EXPECT_TRUE(panel.m_fnInitialize());
                panel.m_fnSetRenderable(bShown);
            });
            Place(&stWorld::aPanels, LayerOf(pKey));
        }
    }
    void AddGraphs(u32 uCount) {
        for (u32 u = 0; u < uCount; ++u) {
            const u32 uType = Pick(4), uColumns = 2 + Pick(20), uValues = Pick(30);
            const Color color = RandomColor();
            Both([&](stWorld& world) {
                CLineGraph_Base& graph = *world.aGraphs.emplace_back(new CLineGraph_Base);
                graph.m_fnSetDrawKey(g_keyColorList);
                graph.m_fnSetColorF(color[0], color[1], color[2], color[3]);
                graph.m_fnSetGraphSize(120, 70);
                graph.m_fnSetRange(0, 100);
                graph.m_fnSetLineType(uType);
                graph.m_fnSetDataNum(uColumns);
                graph.m_fnSetDataWidth(3);
                EXPECT_TRUE(graph.m_fnInitialize());
            });
            Place(&stWorld::aGraphs, g_uLayerColor);
            for (u32 n = 0; n < uValues; ++n) {
                const f32 fValue = Range(-10, 110);
                Both([&](stWorld& world) { world.aGraphs.back()->m_fnAddValue(fValue); });
            }
        }
    }
    void AddPies(u32 uCount) {
        for (u32 u = 0; u < uCount; ++u) {
            const u32 uType = Pick(2), uSlots = 1 + Pick(12), uSegs = 1 + Pick(6);
            const f32 fStart = Range(0, 360), fValue = Range(-5, 105);
            const Color color = RandomColor();
            Both([&](stWorld& world) {
                CPieChart_Base& chart = *world.aPies.emplace_back(new CPieChart_Base);
                chart.m_fnSetDrawKey(g_keyColorList);
                chart.m_fnSetColorF(color[0], color[1], color[2], color[3]);
                chart.m_fnSetChartSize(90, 90);
                chart.m_fnSetRange(0, 100);
                chart.m_fnSetChartType(uType);
                chart.m_fnSetSlotNum(uSlots);
                chart.m_fnSetShapeSegNum(uSegs);
                chart.m_fnSetStartDeg(fStart);
                EXPECT_TRUE(chart.m_fnInitialize());
                chart.m_fnSetValue(fValue);
            });
            Place(&stWorld::aPies, g_uLayerColor);
        }
    }
    /// Noise, some of it clear.
    std::vector<u8> RandomFrame(u32 uWidth, u32 uHeight) {
        std::vector<u8> aFrame(std::size_t{uWidth} * uHeight * 4);
        for (u8& u : aFrame) u = static_cast<u8>(m_random());
        return aFrame;
    }
    void AddVideos(u32 uCount) {
        for (u32 u = 0; u < uCount; ++u) {
            const u32 uWidth = 1 + Pick(20), uHeight = 1 + Pick(20);
            const f32 w = Range(1, 160), h = Range(1, 120);
            const Color color = RandomColor();
            const std::vector<u8> aFrame = RandomFrame(uWidth, uHeight);
            const bool bWritten = Chance(80);
            Both([&](stWorld& world) {
                CVideoBox_Base& box = *world.aVideos.emplace_back(new CVideoBox_Base);
                box.m_fnSetColorF(color[0], color[1], color[2], color[3]);
                box.m_fnSetBoxSize(w, h);
                box.m_fnSetFrameSize(static_cast<f32>(uWidth), static_cast<f32>(uHeight));
                EXPECT_TRUE(box.m_fnInitialize());
                if (bWritten) box.m_fnWriteFrame(aFrame.data(), g_uFormatRGBA8);
            });
            Place(&stWorld::aVideos, g_uLayerTexture);
        }
    }
    void ChangeVideo(u32 u) {
        const u32 uHow = Pick(5);
        const f32 x = Range(-40, 300), y = Range(-30, 190);
        const Color color = RandomColor();
        const CVideoBox_Base& like = *m_astWorlds[0].aVideos[u];
        const std::vector<u8> aFrame =
            RandomFrame(static_cast<u32>(like.m_fFrameW), static_cast<u32>(like.m_fFrameH));
        Both([&](stWorld& world) {
            CVideoBox_Base& box = *world.aVideos[u];
            if (uHow < 2) box.m_fnWriteFrame(aFrame.data(), uHow == 0 ? g_uFormatRGBA8 : g_uFormatBGRA8);
            if (uHow == 2) box.m_fnSetColorF(color[0], color[1], color[2], color[3]);
            if (uHow == 3) box.m_fnMoveTo(x, y, 0);
            if (uHow == 4) box.m_fnSetRenderable(x > 40);
        });
    }
    const char16_t* RandomText() {
        static const char16_t* const awzTexts[] = {u"GPU", u"Frame time\nms", u"a b\tc",
                                                   u"",    u"fijgÄ%",         u"0123456789"};
        return awzTexts[Pick(6)];
    }
    template <class Box>
    void SetUpBox(Box& box, CFontUniCode& font, f32 fSize, const Color& color, bool bShadow) {
        box.m_fnSetFont(&font);
        box.m_fnSetTextSize(fSize);
        box.m_fnSetTextColorF(color[0], color[1], color[2], color[3]);
        box.m_fnSetShadow(bShadow);
        box.m_fnSetShadowColorF(color[2], color[0], color[1], 0.7f);
    }
    void AddTexts(u32 uCount) {
        for (u32 u = 0; u < uCount; ++u) {
            const u32 uFont = Pick(2);
            const f32 fSize = Range(6, 60);
            const Color color = RandomColor();
            const bool bShadow = Chance(50);
            const char16_t* const wzText = RandomText();
            Both([&](stWorld& world) {
                CTextBox_Base& box = *world.aTexts.emplace_back(g_stCreationTable.m_fnCreateTextBox());
                SetUpBox(box, *m_apFonts[uFont], fSize, color, bShadow);
                box.m_fnSetTextW(wzText);
                EXPECT_TRUE(box.m_fnInitialize());
            });
            Place(&stWorld::aTexts, g_uLayerFont);
        }
    }
    void AddNumbers(u32 uCount) {
        for (u32 u = 0; u < uCount; ++u) {
            const u32 uFont = Pick(2);
            const f32 fSize = Range(6, 60);
            const Color color = RandomColor();
            const bool bShadow = Chance(50);
            Both([&](stWorld& world) {
                CNumBox_Base& box = *world.aNumbers.emplace_back(g_stCreationTable.m_fnCreateNumBox());
                SetUpBox(box, *m_apFonts[uFont], fSize, color, bShadow);
                EXPECT_TRUE(box.m_fnInitialize());
            });
            Place(&stWorld::aNumbers, g_uLayerFont);
            if (Chance(80)) ChangeNumber(static_cast<u32>(m_astWorlds[0].aNumbers.size()) - 1);
        }
    }
    stFlipText RandomState() {
        const Color color = RandomColor();
        return {RandomText(), {color[0], color[1], color[2], color[3]}};
    }
    void AddFlips(u32 uCount) {
        for (u32 u = 0; u < uCount; ++u) {
            const u32 uFont = Pick(2), uState = Pick(4);
            const f32 fSize = Range(6, 60);
            const bool bShadow = Chance(50);
            std::vector<stFlipText> states;
            for (u32 n = 0; n < 1 + Pick(4); ++n) states.push_back(RandomState());
            Both([&](stWorld& world) {
                CFlipBox_Base& box = *world.aFlips.emplace_back(g_stCreationTable.m_fnCreateFlipBox());
                SetUpBox(box, *m_apFonts[uFont], fSize, {}, bShadow);
                EXPECT_TRUE(box.m_fnSetStates(states));
                box.m_fnSelectState(uState);
                EXPECT_TRUE(box.m_fnInitialize());
            });
            Place(&stWorld::aFlips, g_uLayerFont);
        }
    }
    void ChangeFlip(u32 u) {
        const u32 uHow = Pick(8), uState = Pick(5);
        const f32 x = Range(-40, 300), y = Range(-30, 190), fSize = Range(6, 60);
        const Color color = RandomColor();
        const stFlipText aStates[] = {RandomState(), RandomState(), RandomState()};
        Both([&](stWorld& world) {
            CFlipBox_Base& box = *world.aFlips[u];
            if (uHow < 3) box.m_fnSelectState(uState);
            if (uHow == 3) box.m_fnSetTextColorF(color[0], color[1], color[2], color[3]);
            if (uHow == 4) box.m_fnMoveTo(x, y, 0);
            if (uHow == 5) box.m_fnSetTextSize(fSize);
            if (uHow == 6) box.m_fnSetRenderable(x > 0);
            if (uHow == 7 && box.m_fnSetStates(std::span(aStates).first(1 + uState % 3))) box.m_fnFlush();
        });
    }
    void ChangeNumber(u32 uBox) {
        const i32 iValue = static_cast<i32>(Pick(2000000)) - 1000000;
        const u32 uHow = Pick(4), uShift = Pick(20);
        Both([&](stWorld& world) {
            CNumBox_Base& box = *world.aNumbers[uBox];
            if (uHow == 0) box.m_fnSetFloat(static_cast<f32>(iValue) / 1000.0f, uShift % 4);
            if (uHow == 1) box.m_fnSetInt(iValue >> uShift, uShift % 6);
            if (uHow == 2) box.m_fnSetIntEx(iValue >> uShift, uShift % 6, false);
            if (uHow == 3 && uShift < 5) box.m_fnClear();
            if (uHow == 3 && uShift >= 5) box.m_fnSetInt(iValue, 0);
        });
    }
    template <class List> u32 CountOf(List stWorld::*pList) {
        return static_cast<u32>((m_astWorlds[0].*pList).size());
    }
    void ChangePanel(u32 u) {
        const u32 uHow = Pick(7);
        const f32 w = Range(1, 160), h = Range(1, 120), x = Range(-40, 300), y = Range(-30, 190);
        const Color color = RandomColor();
        Both([&](stWorld& world) {
            CPanel_Base& panel = *world.aPanels[u];
            const u32 uLayer = LayerOf(panel.m_fnGetDrawKey());
            if (uHow == 0) panel.m_fnSetColorF(color[0], color[1], color[2], color[3]);
            if (uHow == 1) panel.m_fnSetGeometry(w, h);
            if (uHow == 2) panel.m_fnSetCorners(w > 80);
            if (uHow == 3) panel.m_fnMoveTo(x, y, 0);
            if (uHow == 4) panel.m_fnSetRenderable(w > 40);
            if (uHow == 5) world.manager.m_fnDetach(&panel, uLayer);
            if (uHow == 6) world.manager.m_fnAttachFront(&panel, uLayer);
        });
    }
    void ChangeText(u32 u) {
        const u32 uHow = Pick(6);
        const f32 x = Range(-40, 300), y = Range(-30, 190), fSize = Range(6, 60);
        const Color color = RandomColor();
        const char16_t* const wzText = RandomText();
        Both([&](stWorld& world) {
            CTextBox_Base& box = *world.aTexts[u];
            if (uHow == 0) box.m_fnSetTextColorF(color[0], color[1], color[2], color[3]);
            if (uHow == 1) box.m_fnSetShadowColorF(color[0], color[1], color[2], color[3]);
            if (uHow == 2) box.m_fnSetPosition(x, y, 0);
            if (uHow == 3) box.m_fnSetTextSize(fSize);
            if (uHow == 4 && box.m_fnSetTextW(wzText)) box.m_fnFlush();
            if (uHow == 5) box.m_fnSetRenderable(x > 0);
        });
    }
    void ChangeNumberLook(u32 u) {
        const u32 uHow = Pick(5);
        const f32 x = Range(-40, 300), y = Range(-30, 190), fSize = Range(6, 60);
        const Color color = RandomColor();
        Both([&](stWorld& world) {
            CNumBox_Base& box = *world.aNumbers[u];
            if (uHow == 0) box.m_fnSetTextColorF(color[0], color[1], color[2], color[3]);
            if (uHow == 1) box.m_fnMoveTo(x, y, 0);
            if (uHow == 2) box.m_fnSetTextSize(fSize);
            if (uHow == 3) box.m_fnSetSpacing(fSize / 10, 0);
            if (uHow == 4) box.m_fnSetRenderable(x > 0);
        });
    }
    void ChangeGraphsAndPies() {
        const Color color = RandomColor();
        const f32 fValue = Range(-10, 110), x = Range(-40, 300);
        const u32 uHow = Pick(4), uGraph = Pick(1 + CountOf(&stWorld::aGraphs)),
                  uPie = Pick(1 + CountOf(&stWorld::aPies));
        Both([&](stWorld& world) {
            CLineGraph_Base* pGraph = uGraph < world.aGraphs.size() ? world.aGraphs[uGraph].get() : nullptr;
            CPieChart_Base* pPie = uPie < world.aPies.size() ? world.aPies[uPie].get() : nullptr;
            if (pGraph && uHow < 2) pGraph->m_fnAddValue(fValue);
            if (pGraph && uHow == 2) pGraph->m_fnSetColorF(color[0], color[1], color[2], color[3]);
            if (pGraph && uHow == 3) pGraph->m_fnSetPosition(x, fValue, 0);
            if (pPie && uHow < 2) pPie->m_fnSetValue(fValue);
            if (pPie && uHow == 2) pPie->m_fnSetColorF(color[0], color[1], color[2], color[3]);
            if (pPie && uHow == 3) pPie->m_fnSetPosition(x, fValue, 0);
        });
    }
    void ChangeOrder() {
        std::vector<u32> aOrder;
        for (u32 u = 0; u < CountOf(&stWorld::aPanels); ++u)
            if (Chance(50)) aOrder.push_back(u);
        std::shuffle(aOrder.begin(), aOrder.end(), m_random);
        Both([&](stWorld& world) {
            std::vector<CControl*> list;
            for (u32 u : aOrder)
                if (world.aPanels[u]->m_fnGetDrawKey() == g_keyColorList &&
                    world.manager.m_fnIsAttached(world.aPanels[u].get(), g_uLayerColor))
                    list.push_back(world.aPanels[u].get());
            world.pBasic->m_fnSetColorListOrder(list);
        });
    }
    void ChangeSomething() {
        const u32 uPanels = CountOf(&stWorld::aPanels), uTexts = CountOf(&stWorld::aTexts),
                  uNumbers = CountOf(&stWorld::aNumbers), uFlips = CountOf(&stWorld::aFlips);
        const u32 uImages = CountOf(&stWorld::aImages);
        if (uImages && Chance(40)) return ChangeImage(Pick(uImages));
        if (const u32 uVideos = CountOf(&stWorld::aVideos); uVideos && Chance(40)) ChangeVideo(Pick(uVideos));
        switch (Pick(9)) {
        case 0:
        case 1:
            if (uPanels) ChangePanel(Pick(uPanels));
            break;
        case 2:
            if (uTexts) ChangeText(Pick(uTexts));
            break;
        case 3:
        case 4:
            if (uNumbers) ChangeNumber(Pick(uNumbers));
            break;
        case 5:
            if (uNumbers) ChangeNumberLook(Pick(uNumbers));
            break;
        case 6:
            ChangeGraphsAndPies();
            break;
        case 7:
            if (uFlips) ChangeFlip(Pick(uFlips));
            break;
        default:
            if (Chance(30)) ChangeOrder();
        }
    }
    void Build(u32 uSeed) {
        m_random.seed(uSeed);
        Both([&](stWorld& world) {
            world.Clear();
            world.pText->m_fnResetFontLists();
            for (const auto& pFont : m_apFonts) world.manager.m_fnAddToLayer(pFont.get(), g_uLayerFont);
        });
        g_bTextGlow = Chance(12);
        const u32 uBusy = Chance(5) ? 60 : 8;
        AddPanels(Pick(uBusy));
        AddGraphs(Pick(4));
        AddPies(Pick(3));
        AddVideos(Pick(3));
        AddPanels(Pick(4));
        AddTexts(Pick(uBusy));
        AddNumbers(Pick(uBusy));
        if (Chance(60)) AddImages(Pick(6));
        AddFlips(Pick(uBusy));
    }
    std::mt19937 m_random;
};

TEST_F(MergedRandom, FiveHundredLayoutsAndTheirChangesHaveTheSamePixels) {
    WritePictures();
    for (u32 uSeed = 1; uSeed <= 500; ++uSeed) {
        Build(uSeed);
        for (u32 uFrame = 0; uFrame < 4; ++uFrame) {
            g_fLastFrameSeconds = Range(0, 0.03f); // animations go on in both alike
            ASSERT_TRUE(SamePictures()) << "seed " << uSeed << ", frame " << uFrame;
            for (u32 u = 0; u < 1 + Pick(6); ++u) ChangeSomething();
            if (!Chance(5)) continue;
            g_uCanvasW = 300 + Pick(100);
            Both([](stWorld& world) {
                static_cast<CDraw_Base*>(world.pBasic.get())->m_fnOnResize();
                static_cast<CDraw_Base*>(world.pText.get())->m_fnOnResize();
                world.manager.m_fnOnResize();
            });
        }
    }
    EXPECT_GT(m_uDrawn, 1800u) << "most layouts show something";
}

TEST_F(MergedRandom, PicturesAreDrawnOneByOneAboveFlatShapes) {
    GLuint uTexture = 0;
    glGenTextures(1, &uTexture);
    g_bCaptureBackdrop = false;
    g_mapBlurDiameters.clear();
    for (u32 u = 0; u < 6; ++u) {
        const DrawKey pKey = u % 2 == 0 ? g_keyTextureList : g_keyColorList;
        Both([&](stWorld& world) {
            CPanel_Base& panel = *world.aPanels.emplace_back(g_stCreationTable.m_fnCreatePanel());
            panel.m_fnSetGeometry(120, 90);
            panel.m_fnSetColorF(1, 0.2f * static_cast<f32>(u), 0.5f, 0.6f);
            panel.m_fnSetDrawKey(pKey);
            EXPECT_TRUE(panel.m_fnInitialize());
            panel.m_fnSetPosition(20.25f * static_cast<f32>(u), 15 * static_cast<f32>(u), 0);
            world.manager.m_fnAttachBack(&panel, u % 2 == 0 ? g_uLayerTexture : g_uLayerColor);
        });
    }
    const auto fnDraw = [&](stWorld& world) {
        g_pOSDManager = &world.manager;
        glClear(GL_COLOR_BUFFER_BIT);
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, uTexture);
        static constexpr u8 au8Texels[] = {255, 0, 0, 255, 0, 255, 0, 128, 0, 0, 255, 255, 9, 99, 199, 64};
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, au8Texels);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        static_cast<CDraw_Base*>(world.pBasic.get())->m_fnRender();
        return Read().aBytes;
    };
    EXPECT_EQ(fnDraw(m_astWorlds[1]), fnDraw(m_astWorlds[0]));
    EXPECT_EQ(CountDraws(FrameCalls()), 4) << "three pictures above the flat shapes";
    glDeleteTextures(1, &uTexture);
}

TEST_F(MergedRandom, AnAnimationGoesOnInHiddenFramesTooAndOnlyByFramesDrawn) {
    WritePictures();
    g_bCaptureBackdrop = false;
    Both([](stWorld& world) {
        CImgBox_Base& box = *world.aImages.emplace_back(new CImgBox_Base);
        box.m_fnSetColorF(1, 1, 1, 0); // seen by nobody
        box.m_fnSetBoxSize(48, 48);
        box.m_fnSetImageFile(u"3", false);
        EXPECT_TRUE(box.m_fnInitialize());
        world.manager.m_fnAttachBack(&box, g_uLayerTexture);
    });
    g_fLastFrameSeconds = 0.02f; // a frame of the picture lasts half as long
    for (u32 u = 1; u <= 7; ++u) {
        SamePictures();
        if (u == 4) // a frame that lays everything out anew asks each control twice more
            Both([](stWorld& world) { world.aImages[0]->m_fnSetBoxSize(50, 50); });
        Both([&](stWorld& world) {
            EXPECT_EQ(world.aImages[0]->m_pTexture->m_fnGetCurrentFrame(), u % 5);
            if (u == 4) world.aImages[0]->m_fnRebuild();
        });
    }
    Both([](stWorld& world) { world.aImages[0]->m_fnSetColorF(1, 1, 1, 1); });
    EXPECT_TRUE(SamePictures());
    EXPECT_GT(m_uDrawn, 0u);
}

TEST_F(MergedRandom, APictureWithoutASizeCostsNothingUntilItHasOne) {
    WritePictures();
    g_bCaptureBackdrop = false;
    Both([](stWorld& world) {
        CImgBox_Base& box = *world.aImages.emplace_back(new CImgBox_Base);
        box.m_fnSetColorF(1, 1, 1, 1);
        box.m_fnSetBoxSize(0, 0);
        box.m_fnSetImageFile(u"1", false);
        EXPECT_TRUE(box.m_fnInitialize());
        world.manager.m_fnAttachBack(&box, g_uLayerTexture);
    });
    FrameCalls();
    EXPECT_EQ(FrameCalls(), Calls());
    Both([](stWorld& world) {
        world.aImages[0]->m_fnSetBoxSize(90, 90);
        world.aImages[0]->m_fnRebuild();
    });
    EXPECT_TRUE(SamePictures());
    EXPECT_GT(m_uDrawn, 0u);
}

TEST_F(MergedRandom, APictureThatStaysTakesABindAndADraw) {
    WritePictures();
    g_bCaptureBackdrop = false;
    m_random.seed(4);
    for (u32 u = 0; u < 3; ++u) {
        CImgBox_Base& box = *m_astWorlds[1].aImages.emplace_back(new CImgBox_Base);
        g_stCreationTable = m_astWorlds[1].table;
        box.m_fnSetColorF(1, 1, 1, 1);
        box.m_fnSetImageFile(u"1", false);
        EXPECT_TRUE(box.m_fnInitialize());
        m_astWorlds[1].manager.m_fnAttachBack(&box, g_uLayerTexture);
    }
    FrameCalls();
    const Calls calls = FrameCalls();
    EXPECT_EQ(CountDraws(calls), 3);
    EXPECT_EQ(std::ranges::count_if(calls, [](const auto& s) { return s.starts_with("glTexParameter"); }), 0);
    EXPECT_EQ(std::ranges::count_if(calls, [](const auto& s) { return s.starts_with("glBindTexture"); }), 3);
    EXPECT_LE(calls.size(), 10u) << ::testing::PrintToString(calls);
}

/// What a program presents when its panels can change no pixel.
TEST_F(MergedRandom, PanelsWithoutAlphaCostNothingUntilTheyHaveSome) {
    m_random.seed(3);
    AddPanels(20);
    g_bCaptureBackdrop = false;
    for (const auto& pPanel : m_astWorlds[1].aPanels) pPanel->m_fnSetColorF(1, 1, 1, 0);
    FrameCalls();
    EXPECT_EQ(FrameCalls(), Calls());
    const auto& aPanels = m_astWorlds[1].aPanels;
    const auto it = std::ranges::find_if(aPanels, [](const auto& p) {
        return p->m_fnGetDrawKey() == g_keyColorList && p->m_fnIsRenderable();
    });
    ASSERT_NE(it, aPanels.end());
    (*it)->m_fnSetColorF(1, 1, 1, 0.5f);
    EXPECT_EQ(CountDraws(FrameCalls()), 1);
}

TEST_F(MergedRandom, AChangedDigitHandsOverItsOwnQuadOnly) {
    m_random.seed(5);
    Both([&](stWorld& world) {
        for (const auto& pFont : m_apFonts) world.manager.m_fnAddToLayer(pFont.get(), g_uLayerFont);
        for (u32 u = 0; u < 9; ++u) {
            CNumBox_Base& box = *world.aNumbers.emplace_back(g_stCreationTable.m_fnCreateNumBox());
            SetUpBox(box, *m_apFonts[0], 20, {1, 1, 1, 1}, false);
            EXPECT_TRUE(box.m_fnInitialize());
            box.m_fnSetInt(1000, 0);
            world.manager.m_fnAttachBack(&box, g_uLayerFont);
        }
    });
    const auto fnChange = [&](i32 iValue) {
        m_astWorlds[1].aNumbers[4]->m_fnSetInt(iValue, 0);
        return FrameCalls();
    };
    for (i32 i = 0; i < 4; ++i) fnChange(1001 + i); // each of the buffers that take turns has been filled
    const Calls calls = fnChange(1000);
    EXPECT_EQ(std::ranges::count_if(calls, [](const auto& s) { return s.starts_with("glBufferData"); }), 0);
    const auto it =
        std::ranges::find_if(calls, [](const auto& s) { return s.starts_with("glBufferSubData"); });
    ASSERT_NE(it, calls.end());
    // A quad: four vertices of 14 floats, less what stays the same at both ends.
    u32 uBytes = 0;
    const std::string strSize = it->substr(it->find(", ", it->find(", ") + 2) + 2);
    uBytes = static_cast<u32>(std::stoul(strSize));
    EXPECT_LE(uBytes, 4u * 14 * 4) << *it;
    EXPECT_GT(uBytes, 0u);
}

TEST_F(MergedRandom, AFrameWithoutAChangeTakesFewCallsAndHandsNothingOver) {
    m_random.seed(7);
    AddPanels(40);
    AddGraphs(4);
    AddPies(3);
    Both([&](stWorld& world) {
        for (const auto& pFont : m_apFonts) world.manager.m_fnAddToLayer(pFont.get(), g_uLayerFont);
    });
    AddTexts(40);
    AddNumbers(40);
    g_bCaptureBackdrop = false;
    FrameCalls();
    const Calls calls = FrameCalls();
    EXPECT_LE(calls.size(), 12u) << ::testing::PrintToString(calls);
    for (const std::string& strCall : calls) {
        EXPECT_FALSE(strCall.starts_with("glBuffer")) << strCall;
        EXPECT_FALSE(strCall.starts_with("glGet")) << strCall;
        EXPECT_FALSE(strCall.starts_with("glUniform")) << strCall;
    }
    EXPECT_EQ(CountDraws(calls), 3) << "shapes, and one a font";
}

} // namespace
