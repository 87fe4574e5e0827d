// What the tool's runs cannot show: the functions that nothing in it calls (streamdiff,
// capitalize and decapitalize, writeHashSetDeclaration), the namespace frame of a name that has no
// namespace, and the typedef writer's own refusal of a type nested too deep, which a run meets in
// the package step first.

#include "Common.h"
#include "LuaContainerGenerator.h"

#include <zymIO/Environment.h>

#include <gtest/gtest.h>

#include <filesystem>
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

TEST(LuaContainerGenerator, TypedefsRefuseATypeInThirtyThreeNamespaces)
{
    zymIO::Environment::instance().getFilePath(zymIO::Environment::DataFilePath).pushbackPath(TEST_SOURCE_ROOT);
    std::filesystem::create_directories(TEST_SOURCE_ROOT);
    std::string namespaces = "n";
    while (namespaces.size() < 33 * 3 - 2)
        namespaces += "::n";
    std::ofstream(TEST_SOURCE_ROOT "/LuaContainerPrimitives.xml") << "<Type name=\"T\" namespace=\"" << namespaces << "\" />";
    std::stringstream typedefs;
    EXPECT_THROW(writeContainerTypedefs(typedefs), std::runtime_error);
    std::filesystem::remove_all(TEST_SOURCE_ROOT);
}

TEST(Streamdiff, ComparesWholeStreamsWhereverTheyStandAndPutsBackThoseThatDiffer)
{
    // The two texts, the bytes already read from each, whether the first has failed; the answer.
    // Streams that differ are left where they stood; streams found the same, failed at their end.
    for (const auto& [first, second, readFirst, readSecond, failed, differ] :
         {std::tuple{"", "", 0, 0, false, false}, {"same", "same", 0, 0, false, false}, {"abcd", "abce", 0, 0, false, true},
          {"abc", "abcd", 0, 0, false, true}, {"\xff", "\x7f", 0, 0, false, true}, {"abcdef", "abcdef", 2, 0, false, false},
          {"abcdef", "abcxef", 0, 4, false, true}, {"abcdef", "ab", 3, 1, false, true}, {"abcdef", "abcdef", 0, 0, true, true}})
    {
        std::istringstream a(first), b(second);
        a.ignore(readFirst);
        b.ignore(readSecond);
        a.setstate(failed ? std::ios::failbit : std::ios::goodbit);
        EXPECT_EQ(differ, streamdiff(a, b)) << '"' << first << "\" vs \"" << second << '"';
        EXPECT_TRUE(failed || (differ ? a.good() && b.good() && a.tellg() == readFirst && b.tellg() == readSecond : a.fail() && b.fail())) << first;
    }
}

TEST(Capitalize, ChangesTheFirstCharacterOfACopyOnly)
{
    const String original = "vector of Points";
    EXPECT_EQ("Vector of Points", capitalize(original));
    EXPECT_EQ("vector of Points", original);
    for (const auto& [text, upper, lower] : {std::tuple{"VECTOR", "VECTOR", "vECTOR"}, {"", "", ""}, {"3d", "3d", "3d"},
                                             {"Already", "Already", "already"}, {"\xe9t\xe9", "\xe9t\xe9", "\xe9t\xe9"}})
        EXPECT_EQ((std::pair<String, String>(upper, lower)), std::pair(capitalize(text), decapitalize(text))) << text;
}
