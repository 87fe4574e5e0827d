#include "Common.h"

#include <gtest/gtest.h>

#include <sstream>

using zym::Generator::capitalize;
using zym::Generator::decapitalize;
using zym::Generator::streamdiff;

TEST(Streamdiff, ComparesWholeStreamsWhereverTheyStand)
{
    struct Case
    {
        const char* first;
        const char* second;
        bool differ;
    };
    for (const Case& c : {Case{"", "", false}, Case{"same text", "same text", false}, Case{"abcd", "abce", true},
                          Case{"abc", "abcd", true}, Case{"\xff", "\x7f", true}})
    {
        std::istringstream first(c.first), second(c.second);
        EXPECT_EQ(c.differ, streamdiff(first, second)) << '"' << c.first << "\" vs \"" << c.second << '"';
    }

    std::istringstream ahead("equal contents"), behind("equal contents");
    ahead.ignore(6);
    EXPECT_FALSE(streamdiff(ahead, behind));
}

TEST(Streamdiff, LeavesGoodStreamsGoodAtTheirPositionsWhenTheyDiffer)
{
    std::istringstream first("abcdef"), second("abcxef"), shorter("ab");
    first.ignore(2);
    second.ignore(4);
    EXPECT_TRUE(streamdiff(first, second));
    EXPECT_TRUE(first.good() && second.good());
    EXPECT_EQ(2, first.tellg());
    EXPECT_EQ(4, second.tellg());

    EXPECT_TRUE(streamdiff(first, shorter));
    EXPECT_TRUE(first.good() && shorter.good());
    EXPECT_EQ(2, first.tellg());
    EXPECT_EQ('c', first.get());
}

TEST(Streamdiff, CountsAFailedStreamAsADifference)
{
    std::istringstream failed("abc"), good("abc");
    failed.setstate(std::ios::failbit);
    EXPECT_TRUE(streamdiff(failed, good));
}

TEST(Capitalize, ChangesTheFirstCharacterOfACopyOnly)
{
    const String original = "vector of Points";
    EXPECT_EQ("Vector of Points", capitalize(original));
    EXPECT_EQ("vector of Points", original);
    EXPECT_EQ("vECTOR", decapitalize("VECTOR"));
    EXPECT_EQ("", capitalize(""));
    EXPECT_EQ("", decapitalize(""));
    EXPECT_EQ("3d", capitalize("3d"));
    EXPECT_EQ("Already", capitalize("Already"));
    EXPECT_EQ("already", decapitalize("already"));
    EXPECT_EQ("\xe9t\xe9", capitalize("\xe9t\xe9"));
}
