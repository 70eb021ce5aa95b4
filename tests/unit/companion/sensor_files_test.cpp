#include "companion/sensors/text_file.h"
#include "machine_fixture.h"

using SensorFiles = MachineTest;

TEST(SensorText, OneNumberAndNothingElse) {
    EXPECT_EQ(ParseNumber("45500\n"), 45500);
    EXPECT_EQ(ParseNumber(" \t-12 \r\n"), -12);
    EXPECT_EQ(ParseNumber("9223372036854775807"), 9223372036854775807);
    for (const char* szBad : {"", "\n", "-", "+5", "abc", "12 34", "12x", "0x10", "1.5",
                              "9223372036854775808", "99999999999999999999999999"}) {
        EXPECT_EQ(ParseNumber(szBad), kNone) << szBad;
    }
}

TEST(SensorText, NumbersAreTakenOneByOne) {
    size_t uAt = 3;
    EXPECT_EQ(TakeNumber("cpu12  7\t8", uAt), 12u);
    EXPECT_EQ(TakeNumber("cpu12  7\t8", uAt), 7u);
    EXPECT_EQ(TakeNumber("cpu12  7\t8", uAt), 8u);
    EXPECT_EQ(TakeNumber("cpu12  7\t8", uAt), kNone);
    uAt = 0;
    EXPECT_EQ(TakeNumber("x1", uAt), kNone);
    EXPECT_EQ(TakeNumber("18446744073709551616", uAt), kNone);
}

TEST(SensorText, LinesEndWithOrWithoutALineEnd) {
    std::vector<std::string> listLines;
    std::string_view strLine;
    for (size_t uFrom = 0; TakeLine("a\n\nb", uFrom, strLine);) listLines.emplace_back(strLine);
    EXPECT_EQ(listLines, (std::vector<std::string>{"a", "", "b"}));
    size_t uFrom = 0;
    EXPECT_FALSE(TakeLine("", uFrom, strLine));
}

TEST_F(SensorFiles, NumberOfAFile) {
    Write("n", "2100\n");
    EXPECT_EQ(ReadNumber(Root() + "/n"), 2100);
    Write("n", std::string(64, '1'));
    EXPECT_EQ(ReadNumber(Root() + "/n"), kNone);
    Write("n", "5" + std::string(100, ' '));
    EXPECT_EQ(ReadNumber(Root() + "/n"), kNone); // longer than any number's file
    MakeUnreadable("n");
    EXPECT_EQ(ReadNumber(Root() + "/n"), kNone);
    EXPECT_EQ(ReadNumber(Root() + "/missing"), kNone);
}

TEST_F(SensorFiles, FirstLineIsTrimmedAndBounded) {
    Write("name", " coretemp \nmore\n");
    EXPECT_EQ(ReadFirstLine(Root() + "/name"), "coretemp");
    Write("name", std::string(1000, 'x'));
    EXPECT_EQ(ReadFirstLine(Root() + "/name"), std::string(255, 'x'));
    EXPECT_EQ(ReadFirstLine(Root() + "/missing"), "");
}

TEST_F(SensorFiles, TextIsReadWholeUpToItsLimit) {
    std::string strText;
    Write("t", std::string(10000, 'a') + "b");
    ASSERT_TRUE(ReadText(Root() + "/t", strText));
    EXPECT_EQ(strText.size(), 10001u);
    Write("t", std::string(5u << 20, 'a'));
    ASSERT_TRUE(ReadText(Root() + "/t", strText));
    EXPECT_EQ(strText.size(), 4u << 20);
    MakeUnreadable("t");
    EXPECT_FALSE(ReadText(Root() + "/t", strText));
    EXPECT_EQ(strText, "");
}

TEST_F(SensorFiles, EntriesComeByNumber) {
    for (const char* szName : {"cpu10", "cpu9", "cpu0", "cpufreq", "cpu", "cpu1x", "xcpu1", "cpu99999999999"})
        Write(std::string("f/") + szName, "");
    std::vector<u32> listNumbers;
    for (const Entry& st : NumberedEntries(Root() + "/f", "cpu")) listNumbers.push_back(st.uNumber);
    EXPECT_EQ(listNumbers, (std::vector<u32>{0, 9, 10}));
    EXPECT_TRUE(NumberedEntries(Root() + "/missing", "cpu").empty());
    Write("h/temp2_input", "");
    Write("h/temp_input", "");
    Write("h/temp1_label", "");
    const auto listInputs = NumberedEntries(Root() + "/h", "temp", "_input");
    ASSERT_EQ(listInputs.size(), 1u);
    EXPECT_EQ(listInputs[0].uNumber, 2u);
}

TEST(SensorReading, PercentIsRoundedAndNeverInvented) {
    EXPECT_EQ(Percent(0, 5), 0);
    EXPECT_EQ(Percent(5, 5), 100);
    EXPECT_EQ(Percent(1, 8), 13); // 12.5
    EXPECT_EQ(Percent(124, 1000), 12);
    EXPECT_EQ(Percent(0, 0), kNone);
    EXPECT_EQ(Percent(6, 5), kNone);
    EXPECT_EQ(Percent(~u64{0}, ~u64{0}), 100);
}

TEST(SensorNumbers, RankDecidesWithinARoundAndIndexesStay) {
    Numbers numbers;
    numbers.Propose("gpu", "00:02", 0);
    numbers.Propose("gpu", "03:00", 8);
    numbers.Propose("gpu", "04:00", 8);
    numbers.Propose("fan", "a");
    EXPECT_EQ(numbers.IndexOf("gpu", "03:00"), kNone);
    numbers.Settle();
    EXPECT_EQ(numbers.IndexOf("gpu", "03:00"), 0u);
    EXPECT_EQ(numbers.IndexOf("gpu", "04:00"), 1u);
    EXPECT_EQ(numbers.IndexOf("gpu", "00:02"), 2u);
    EXPECT_EQ(numbers.IndexOf("fan", "a"), 0u);
    numbers.Propose("gpu", "05:00", 99);
    numbers.Propose("gpu", "00:02", 100);
    numbers.Settle();
    EXPECT_EQ(numbers.IndexOf("gpu", "03:00"), 0u);
    EXPECT_EQ(numbers.IndexOf("gpu", "00:02"), 2u);
    EXPECT_EQ(numbers.IndexOf("gpu", "05:00"), 3u);
    EXPECT_EQ(numbers.Count("gpu"), 4u);
    EXPECT_EQ(numbers.Count("cpu"), 0u);
}
