// Time of day and the wall clock.
#include "platform/clock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

bool Matches(const platform::stLocalTime& st, time_t t) {
    const tm& stExpected = *localtime(&t);
    return st.uYear == static_cast<u32>(stExpected.tm_year + 1900) &&
           st.uMonth == static_cast<u32>(stExpected.tm_mon + 1) &&
           st.uDay == static_cast<u32>(stExpected.tm_mday) &&
           st.uHour == static_cast<u32>(stExpected.tm_hour) &&
           st.uMinute == static_cast<u32>(stExpected.tm_min) &&
           st.uSecond == static_cast<u32>(stExpected.tm_sec);
}

TEST(LocalTime, AgreesWithTheCLibrary) {
    const time_t tBefore = time(nullptr);
    const platform::stLocalTime st = platform::LocalTime();
    const time_t tAfter = time(nullptr);
    EXPECT_TRUE(Matches(st, tBefore) || Matches(st, tAfter));
}

TEST(LocalTime, UnixMillisecondsAreThoseOfTheWallClock) {
    const i64 iBefore = static_cast<i64>(time(nullptr)) * 1000;
    const i64 iNow = platform::UnixMilliseconds();
    EXPECT_GE(iNow, iBefore);
    EXPECT_LT(iNow, (static_cast<i64>(time(nullptr)) + 1) * 1000);
}

} // namespace
