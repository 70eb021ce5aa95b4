#include "base/slots.h"
#include "draw/upload.h"

#include "base/log.h"
#include "controls/osd_manager.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> g_aLines;

struct Upload : ::testing::Test {
    void SetUp() override {
        g_aLines.clear();
        g_fnLogSink = [](const char* szLine) { g_aLines.push_back(szLine); };
    }
    void TearDown() override {
        g_apSharedVertexBuffer[0] = nullptr;
        g_fnLogSink = nullptr;
    }
    u8 m_au8Room[64] = {};
    stSharedVertexBuffer m_stBuffer{m_au8Room, 64};
};

const u8 g_au8Vertices[32] = {1, 2, 3, 4};

} // namespace

TEST_F(Upload, WithoutASharedBufferNothingHappens) {
    for (const stSharedVertexBuffer* pBuffer : g_apSharedVertexBuffer) EXPECT_EQ(pBuffer, nullptr);
    g_fnUploadControlVertices(g_au8Vertices, 0xFFFFFFFF, 0xFFFFFFFF);
    g_fnUploadControlVertices(nullptr, 0, 32);
    EXPECT_TRUE(g_aLines.empty());
}

TEST_F(Upload, CopiesToItsPlaceInTheBufferOfTheCurrentSlot) {
    g_apSharedVertexBuffer[g_uManagerSlot] = &m_stBuffer;
    g_fnUploadControlVertices(g_au8Vertices, 32, 32);
    EXPECT_EQ(m_au8Room[31], 0);
    EXPECT_EQ(m_au8Room[32], 1);
    EXPECT_EQ(m_au8Room[35], 4);
    EXPECT_TRUE(g_aLines.empty());
}

TEST_F(Upload, WhatReachesPastTheEndIsLoggedAndSkipped) {
    g_apSharedVertexBuffer[g_uManagerSlot] = &m_stBuffer;
    g_fnUploadControlVertices(g_au8Vertices, 33, 32);
    g_fnUploadControlVertices(g_au8Vertices, 0xFFFFFFE0, 32); // the sum would wrap to 0
    g_fnUploadControlVertices(g_au8Vertices, 0, 65);
    EXPECT_EQ(g_aLines, std::vector<std::string>(3, "(u32VOffset + u32VSize) > uTotal_VB_Size"));
    for (u8 u8Value : m_au8Room) EXPECT_EQ(u8Value, 0);
}
