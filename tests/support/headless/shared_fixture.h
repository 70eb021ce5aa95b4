#pragma once
// Every test of this folder starts from the back-end's defaults and from the library's state at load.
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

class SharedTest : public ::testing::Test {
  protected:
    void SetUp() override { ResetLibrary(); }
    void TearDown() override { ResetLibrary(); }
    static void ResetLibrary();

    static stSharedSegment& Segment() { return *platform::SharedSegment(); }
    static stProcessRecord& CommandSlot(u32 u) { return Segment().CommandTable[u]; }
    static stProcessRecord& StatusSlot(u32 u) { return Segment().StatusTable[u]; }
    /// Lines of g_fnLog since the start of the test.
    static const std::vector<std::string>& Lines();
    static bool Logged(const std::string& strLine);
};

/// Ids that the back-end reports by default.
constexpr u32 c_uPid = 4242;
constexpr u32 c_uTid = 4343;

void SetName(char16_t* wzTo, const std::u16string& str);
