// What is taken out of a problem report: the person.
#include "companion/problem_report.h"
#include <gtest/gtest.h>

using companion::WithoutPerson;

TEST(CompanionProblemReport, TheHomeFolderIsATilde) {
    EXPECT_EQ(WithoutPerson("at /home/petra/x and /home/petra", "/home/petra", {}), "at ~/x and ~");
    EXPECT_EQ(WithoutPerson("/home/petra2/x", "/home/petra", {}), "/home/petra2/x") << "somebody else's";
    EXPECT_EQ(WithoutPerson("Z:\\HOME\\Petra\\x", "/home/petra", {}), "Z:~\\x");
    EXPECT_EQ(WithoutPerson("c:/users/petra/a C:\\Users\\PETRA", "C:\\Users\\petra", {}), "~/a ~");
    EXPECT_EQ(WithoutPerson("a/b", "", {}), "a/b");
}

TEST(CompanionProblemReport, NamesThatStandAsWordsAreTaken) {
    EXPECT_EQ(WithoutPerson("/srv/petra/game of Petra Mill, petral", "", {"Petra Mill", "petra"}),
              "/srv/USER/game of USER, petral");
    EXPECT_EQ(WithoutPerson("petra-petra_petra", "", {"petra"}), "USER-USER_USER");
    EXPECT_EQ(WithoutPerson("root ab user", "", {"root", "ab", "user", ""}), "root ab user");
    EXPECT_EQ(WithoutPerson("petra", "/home/petra", {"petra"}), "USER");
}
