// The functions that nothing in the tool calls, which its runs cannot show: streamdiff,
// capitalize and decapitalize, writeHashSetDeclaration, and the namespace frame of a name that has
// no namespace.

#include "Common.h"
#include "LuaContainerGenerator.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <tuple>

using namespace zym::Generator;

TEST(LuaContainerGenerator, WritesTheHashSetClassRowByRowAndNoFrameForANameWithoutNamespace)
{
    std::ostringstream hashSet, frame, expected;
    writeHashSetDeclaration(hashSet, zym::Indentation{2}, "Point", "geo::shape");
    expected << std::ifstream(GOLDEN_DIR "/PointHash-at-level-2.txt").rdbuf();
    EXPECT_EQ(expected.str(), hashSet.str());
    writeContainerDeclarations(frame, zym::Indentation{1}, "Point");
    EXPECT_EQ("", frame.str());
}

TEST(Streamdiff, ComparesWholeStreamsWhereverTheyStandAndLeavesThemThere)
{
    for (const auto& [first, second, differ] : {std::tuple{"", "", false}, std::tuple{"same", "same", false},
                                                 std::tuple{"abcd", "abce", true}, std::tuple{"abc", "abcd", true},
                                                 std::tuple{"\xff", "\x7f", true}})
    {
        std::istringstream a(first), b(second);
        EXPECT_EQ(differ, streamdiff(a, b)) << '"' << first << "\" vs \"" << second << '"';
    }
    std::istringstream ahead("abcdef"), behind("abcdef"), first("abcdef"), other("abcxef"), shorter("ab");
    ahead.ignore(2);
    other.ignore(4);
    EXPECT_FALSE(streamdiff(ahead, behind));
    EXPECT_TRUE(streamdiff(first, other) && streamdiff(first, shorter));
    EXPECT_TRUE(first.good() && other.good() && shorter.good() && other.tellg() == 4);
    std::istringstream failed("abcdef"), same("abcdef");
    failed.setstate(std::ios::failbit);
    EXPECT_TRUE(streamdiff(failed, same));
}

TEST(Capitalize, ChangesTheFirstCharacterOfACopyOnly)
{
    const String original = "vector of Points";
    EXPECT_EQ("Vector of Points", capitalize(original));
    EXPECT_EQ("vector of Points", original);
    EXPECT_EQ("vECTOR", decapitalize("VECTOR"));
    for (const char* unchanged : {"", "3d", "Already", "\xe9t\xe9"})
        EXPECT_EQ(unchanged, capitalize(unchanged));
    for (const char* unchanged : {"", "already"})
        EXPECT_EQ(unchanged, decapitalize(unchanged));
}
