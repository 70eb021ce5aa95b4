#include "draw/canvas.h"

#include <gtest/gtest.h>

class Canvas : public ::testing::Test {
  protected:
    void SetUp() override { Restore(); }
    void TearDown() override { Restore(); }
    static void Restore() {
        g_uCanvasH = 1080;
        g_fnStoreSize(1280, 720);
        g_bNeedOnResize = true;
    }
};

TEST_F(Canvas, FollowsTheAspectAtAFixedHeight) {
    g_fnStoreSize(1024, 768);
    EXPECT_EQ(g_uWidth, 1024u);
    EXPECT_EQ(g_uHeight, 768u);
    EXPECT_EQ(g_fAspect, 1024.0f / 768.0f);
    EXPECT_EQ(g_uCanvasH, 1080u);
    EXPECT_EQ(g_uCanvasW, 1440u);
}

TEST_F(Canvas, WidthIsASinglePrecisionProduct) {
    // In double precision the product is a little below 2580.
    g_fnStoreSize(3440, 1440);
    EXPECT_EQ(g_uCanvasW, static_cast<u32>(1080.0f * (3440.0f / 1440.0f)));
    EXPECT_EQ(g_uCanvasW, 2580u);
}

TEST_F(Canvas, AnotherHeightTakesTheWidthAlong) {
    g_bNeedOnResize = false;
    g_fnSetCanvasHeight(720);
    EXPECT_EQ(g_uCanvasH, 720u);
    EXPECT_EQ(g_uCanvasW, 1280u);
    EXPECT_TRUE(g_bNeedOnResize);
    g_fnSetCanvasHeight(0);
    EXPECT_EQ(g_uCanvasH, 1080u);
    EXPECT_EQ(g_uCanvasW, 1920u);
    g_fnSetCanvasHeight(0xFFFFFFFF);
    EXPECT_EQ(g_uCanvasW, 0xFFFFFFFFu) << "no size wraps";
}

TEST_F(Canvas, SizeWithAZeroSideIsStoredButAspectAndCanvasStay) {
    g_fnStoreSize(1920, 1080);
    g_fnStoreSize(0, 600);
    EXPECT_EQ(g_uWidth, 0u);
    EXPECT_EQ(g_uHeight, 600u);
    EXPECT_EQ(g_fAspect, 1920.0f / 1080.0f);
    EXPECT_EQ(g_uCanvasW, 1920u);
    g_fnStoreSize(800, 0);
    EXPECT_EQ(g_uHeight, 0u);
    EXPECT_EQ(g_uCanvasW, 1920u);
}

TEST_F(Canvas, WidthIsAtLeastOne) {
    g_fnStoreSize(1, 5000);
    EXPECT_EQ(g_uCanvasW, 1u);
}

TEST_F(Canvas, EverySizeChangeMarksTheLayoutDirtyAndNothingClearsIt) {
    g_bLayoutDirty = false;
    g_fnStoreSize(640, 480);
    EXPECT_TRUE(g_bLayoutDirty);
}
