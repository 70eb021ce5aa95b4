#include "controls/anchor.h"

#include "draw/canvas.h"

#include <gtest/gtest.h>

namespace {

struct stPoint {
    f32 x = -12345, y = -12345;
};

stPoint Place(i32 iCode, f32 x, f32 y, f32 w, f32 h, f32 pX, f32 pY, f32 pW, f32 pH) {
    stPoint st;
    g_fnAnchorToPosition(iCode, x, y, w, h, pX, pY, pW, pH, &st.x, &st.y);
    return st;
}

struct stCase {
    i32 iCode;
    f32 x, y;
};

// Offset (7, 9), size 50 by 30, parent 640 by 480 at (100, 200); worked out by hand.
constexpr stCase g_aCases[] = {
    {0, 107, 209},   {1, 107, 209},  {2, 402, 209},          {3, 683, 209},
    {4, 107, 434},   {5, 402, 416},  {6, 683, 434},          {7, 107, 641},
    {8, 402, 641},   {9, 683, 641},  {-1, 43, 161},          {-2, 402, 161},
    {-3, 747, 161},  {-4, 43, 434},  {-5, 402, 434},         {-6, 747, 434},
    {-7, 43, 689},   {-8, 402, 689}, {-9, 747, 689},         {10, 107, 209},
    {-10, 107, 209}, {13, 107, 209}, {2147483647, 107, 209}, {-2147483647 - 1, 107, 209},
};

TEST(Anchor, EveryCodeAgainstTheWorkedTable) {
    for (const stCase& st : g_aCases) {
        const stPoint got = Place(st.iCode, 7, 9, 50, 30, 100, 200, 640, 480);
        EXPECT_EQ(got.x, st.x) << "code " << st.iCode;
        EXPECT_EQ(got.y, st.y) << "code " << st.iCode;
    }
}

TEST(Anchor, Code9SitsAtTheFarCorner) {
    const stPoint st = Place(9, 10, 20, 100, 50, 0, 0, 1920, 1080);
    EXPECT_EQ(st.x, 1810);
    EXPECT_EQ(st.y, 1010);
}

TEST(Anchor, Code5MovesUpWithAPositiveY) {
    const stPoint st = Place(5, 10, 20, 100, 50, 0, 0, 1920, 1080);
    EXPECT_EQ(st.x, 920);
    EXPECT_EQ(st.y, 495);
}

TEST(Anchor, CodeMinus9LiesBeyondTheFarCorner) {
    const stPoint st = Place(-9, 3, 4, 20, 30, 100, 100, 50, 50);
    EXPECT_EQ(st.x, 153);
    EXPECT_EQ(st.y, 154);
}

TEST(Anchor, Code13AndCode0CountAs1) {
    for (i32 iCode : {13, 0, 1}) {
        const stPoint st = Place(iCode, 3, 4, 20, 30, 100, 200, 50, 50);
        EXPECT_EQ(st.x, 103);
        EXPECT_EQ(st.y, 204);
    }
}

TEST(Anchor, ChildOfAParentOfWidth0UnderCode3) {
    EXPECT_EQ(Place(3, 7, 0, 50, 30, 100, 0, 0, 10).x, 100 - 50 - 7);
}

TEST(Anchor, RoundsAfterEachStep) {
    // 4 is half a unit in the last place there: each step rounds it away, their sum would not.
    EXPECT_EQ(Place(3, 4, 0, 4, 0, 0, 0, 1.0e8f, 0).x, 1.0e8f);
    EXPECT_EQ(Place(9, 4, 4, 4, 4, 0, 0, 1.0e8f, 1.0e8f).y, 1.0e8f);
}

TEST(Anchor, OutputsMayBeNull) {
    f32 f = 0;
    g_fnAnchorToPosition(1, 3, 4, 1, 1, 0, 0, 9, 9, nullptr, &f);
    EXPECT_EQ(f, 4);
    g_fnAnchorToPosition(1, 3, 4, 1, 1, 0, 0, 9, 9, &f, nullptr);
    EXPECT_EQ(f, 3);
    g_fnAnchorToRect(1, 3, 4, 1, 2, 0, 0, 9, 9, nullptr, nullptr, nullptr, &f);
    EXPECT_EQ(f, 6);
    g_fnReanchor(1, 3, 4, 1, 2, 0, 0, 9, 9, 9, nullptr, &f);
    EXPECT_EQ(f, 3);
    g_fnReanchor(1, 3, 4, 1, 2, 0, 0, 9, 9, 0, &f, nullptr);
    EXPECT_EQ(f, 3);
}

TEST(Anchor, RectHasAllFourEdges) {
    f32 l, t, r, b;
    g_fnAnchorToRect(9, 7, 9, 50, 30, 100, 200, 640, 480, &l, &t, &r, &b);
    EXPECT_EQ(l, 683);
    EXPECT_EQ(t, 641);
    EXPECT_EQ(r, 733);
    EXPECT_EQ(b, 671);
}

TEST(Reanchor, KeepsThePlaceForEveryPairOfCodesUnderTheCanvas) {
    for (i32 iOld = -10; iOld <= 10; ++iOld)
        for (i32 iNew = 1; iNew <= 9; ++iNew) {
            stPoint stOffset;
            g_fnReanchor(iOld, 7, 9, 50, 30, 0, 0, 640, 480, iNew, &stOffset.x, &stOffset.y);
            const stPoint stOld = Place(iOld, 7, 9, 50, 30, 0, 0, 640, 480);
            const stPoint stNew = Place(iNew, stOffset.x, stOffset.y, 50, 30, 0, 0, 640, 480);
            EXPECT_EQ(stNew.x, stOld.x) << iOld << " to " << iNew;
            EXPECT_EQ(stNew.y, stOld.y) << iOld << " to " << iNew;
        }
}

TEST(Reanchor, ColumnsAndOuterRowsCountFromTheParent) {
    // Rectangle (107, 209) to (157, 239) in a parent (100, 200) to (740, 680).
    const stCase aWanted[] = {{1, 7, 9},   {2, -288, 9},   {3, 583, 9},
                              {7, 7, 441}, {8, -288, 441}, {9, 583, 441}};
    for (const stCase& st : aWanted) {
        stPoint got;
        g_fnReanchor(1, 7, 9, 50, 30, 100, 200, 640, 480, st.iCode, &got.x, &got.y);
        EXPECT_EQ(got.x, st.x) << st.iCode;
        EXPECT_EQ(got.y, st.y) << st.iCode;
    }
}

TEST(Reanchor, MiddleRowsUseTheParentsX) {
    // Middle of the rectangle: 15 + 209 = 224; "middle" of the parent: 240 + 100 = 340.
    const stCase aWanted[] = {{4, 7, -116}, {5, -288, 116}, {6, 583, -116}};
    for (const stCase& st : aWanted) {
        stPoint got;
        g_fnReanchor(1, 7, 9, 50, 30, 100, 200, 640, 480, st.iCode, &got.x, &got.y);
        EXPECT_EQ(got.x, st.x) << st.iCode;
        EXPECT_EQ(got.y, st.y) << st.iCode;
    }
}

TEST(Reanchor, NewCode0LeavesTheOffsetUntouched) {
    for (i32 iNew : {0, 10, -1, -9, 77}) {
        stPoint got;
        g_fnReanchor(9, 7, 9, 50, 30, 100, 200, 640, 480, iNew, &got.x, &got.y);
        EXPECT_EQ(got.x, 7);
        EXPECT_EQ(got.y, 9);
    }
}

TEST(Reanchor, OnCanvasTakesTheCanvasAsParent) {
    const u32 uW = g_uCanvasW, uH = g_uCanvasH;
    g_uCanvasW = 1440;
    g_uCanvasH = 1080;
    stPoint got;
    g_fnReanchorOnCanvas(9, 24, 24, 100, 50, 1, &got.x, &got.y);
    EXPECT_EQ(got.x, 1316);
    EXPECT_EQ(got.y, 1006);
    g_uCanvasW = uW;
    g_uCanvasH = uH;
}

} // namespace
