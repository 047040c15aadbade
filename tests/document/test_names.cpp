#include "document/names.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;

TEST(Names, GetNewNameTakesFirstFreeNumberIgnoringCase) {
    EXPECT_EQ(_001GetNewName("Screen", 0, {}), "Screen1");
    EXPECT_EQ(_001GetNewName("Screen", 0, {"screen1", "SCREEN2"}), "Screen3");
    EXPECT_EQ(_001GetNewName("Screen", 9, {"screen10"}), "Screen11");
}

TEST(Names, GetNewNameKeptEdges) {
    string_array all;
    for (int i = 1; i <= 999; ++i)
        all.push_back("S" + std::to_string(i));
    // Every number up to 999 taken: the last candidate tried, although taken.
    EXPECT_EQ(_001GetNewName("S", 0, all), "S999");
    EXPECT_EQ(_001GetNewName("S", 1000, {}), "");
    EXPECT_EQ(_001GetNewName("S", 999, {}), "");
}

TEST(Names, IncrementNameRules) {
    EXPECT_EQ(_001IncrementName("Screen1", "Screen", {"Screen1"}), "Screen2");
    EXPECT_EQ(_001IncrementName("Screen 12", "Screen", {}), "Screen 13");
    EXPECT_EQ(_001IncrementName("P 2.6mm", "P 2.6mm", {}), "P 2.6mm1");
    EXPECT_EQ(_001IncrementName("12", "Screen", {}), "Screen13");
    EXPECT_EQ(_001IncrementName("A7", "Screen", {}), "Screen1");
    EXPECT_EQ(_001IncrementName("", "Screen", {"Screen1"}), "Screen2");
    EXPECT_EQ(_001IncrementName("Screen9", "Screen", {"screen10"}), "Screen11");
    EXPECT_EQ(_001IncrementName("Screen1000", "Screen", {}), "");
    // Code points, not bytes: a non-ASCII name before the digits.
    EXPECT_EQ(_001IncrementName("Écran4", "Screen", {}), "Écran5");
}
