#pragma once
// A context, a manager and a data folder: what the basic batcher needs to draw. One canvas unit is one pixel.
#include "batch/draw_basic_gl.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "platform/headless/egl_context.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

using Pixel = std::array<u8, 4>;

/// RGBA bytes, top row first.
struct Picture {
    u32 uWidth = 0, uHeight = 0;
    std::vector<u8> aBytes;

    Pixel At(u32 x, u32 y) const;
    /// Alpha is left out. Written below the build folder, for eyes.
    void Save(const std::string& strName) const;
};

/// Stripes, a ramp and noise: nothing in it is symmetric, so that no mirroring goes unseen.
Picture MakeBackdrop(u32 uWidth, u32 uHeight);
/// The frosted picture by the plain rule: equal weights over the disc's sample points, edges repeated.
Pixel BlurredPixel(const Picture& picture, u32 x, u32 y, u32 uDiameter, const f32* pColor);

class DrawFixture : public ::testing::Test {
  protected:
    static constexpr u32 s_uWidth = 320, s_uHeight = 200;

    void SetUp() override;
    void TearDown() override;
    /// Replaces the context of SetUp.
    void UseContext(bool bCore);

    /// A panel, shown under its key in the layer of that key.
    CPanel_Base& AddPanel(u32 uShape, f32 x, f32 y, f32 w, f32 h, const std::array<f32, 4>& afColor,
                          DrawKey pKey = g_keyColorList, f32 e = 0, f32 t = 0, f32 c = 0);
    /// Initialises the batcher for the diameters that are noted.
    CDrawBasic_GL& Batcher();
    /// Clears to a colour and draws everything.
    Picture Draw(f32 r, f32 g, f32 b);
    /// Puts a picture into the frame and takes the copy of it that frosted panels look through.
    void PutBackdrop(const Picture& picture);
    Picture Read() const;

    CTestDataFolder m_folder;
    platform::headless::EglContext m_context;
    COSDManager m_manager;
    std::vector<std::unique_ptr<CPanel_Base>> m_apPanels;
    std::unique_ptr<CDrawBasic_GL> m_pBatcher;
    u32 m_uVertexArray = 0;

  private:
    void SetUpDrawing();
};

/// Every component at most uSlack apart.
::testing::AssertionResult Near(const Pixel& actual, const Pixel& expected, int iSlack);
