#pragma once
// A hooked program of one thread with an off-screen context, whose swaps run through the library.
#include "platform/headless/egl_context.h"
#include "platform/types.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

/// Base of tests that drive whole frames. Everything of the library is at its start in SetUp and released in
/// TearDown.
class FrameFixture : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// Makes the context and the data folder. False (with a test failure) if the driver offers no such
    /// context.
    bool Begin(bool bCore, const char16_t* wzProfile = u"Bench", u32 uWidth = 640, u32 uHeight = 480);
    /// The same with a context of any kind; the size is that of the options.
    bool Begin(const platform::headless::EglOptions& stOptions, const char16_t* wzProfile);
    /// Sets these keys of [HostCare] to 1 for the builds that follow.
    void SetCare(std::initializer_list<const char*> listKeys);
    /// Data folder with settings and profiles, and with the shaders of the source tree or without any.
    void UseShaders(bool bPresent);
    /// One swap of the application's current surface.
    i32 Swap();
    /// Swaps until resources exist; false if they never do.
    bool RunUntilBuilt();
    /// Calls that one swap makes.
    std::vector<std::string> RecordSwap();

    platform::headless::EglContext m_context;
    std::string m_strFolder;
};

/// Place of a call in a list, from uFrom on; npos without one.
std::size_t FindCall(const std::vector<std::string>& vecCalls, const std::string& strCall,
                     std::size_t uFrom = 0);
/// How many of the calls begin with this text.
std::size_t CountCalls(const std::vector<std::string>& vecCalls, const std::string& strPrefix);
