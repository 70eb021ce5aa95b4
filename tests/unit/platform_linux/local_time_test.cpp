// Time of day and the wall clock.
#include "platform/clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace {

TEST(LocalTime, FollowsTheZone) {
    // Zones of this notation name what is added to get back to universal time.
    setenv("TZ", "TST-05:30", 1);
    tzset();
    const time_t tBefore = time(nullptr);
    const platform::stLocalTime st = platform::LocalTime();
    const time_t tAfter = time(nullptr);
    const auto Matches = [&st](time_t t) {
        t += 5 * 3600 + 30 * 60;
        tm stExpected{};
        gmtime_r(&t, &stExpected);
        return st.uYear == static_cast<u32>(stExpected.tm_year + 1900) &&
               st.uMonth == static_cast<u32>(stExpected.tm_mon + 1) &&
               st.uDay == static_cast<u32>(stExpected.tm_mday) &&
               st.uHour == static_cast<u32>(stExpected.tm_hour) &&
               st.uMinute == static_cast<u32>(stExpected.tm_min) &&
               st.uSecond == static_cast<u32>(stExpected.tm_sec);
    };
    EXPECT_TRUE(Matches(tBefore) || Matches(tAfter));
    unsetenv("TZ");
    tzset();
}

TEST(LocalTime, UnixMillisecondsAreThoseOfTheWallClock) {
    const i64 iBefore = static_cast<i64>(time(nullptr)) * 1000;
    const i64 iNow = platform::UnixMilliseconds();
    EXPECT_GE(iNow, iBefore);
    EXPECT_LT(iNow, (static_cast<i64>(time(nullptr)) + 2) * 1000); // time() runs some milliseconds late
}

} // namespace
