// What the tool's runs cannot show: the exported writers on streams that the caller hands in,
// the functions that nothing in the tool calls (streamdiff, capitalize, decapitalize,
// writeHashSetDeclaration), the namespace frame of a name without a namespace, and the typedef
// writer's own refusal of a type nested too deep, which a run meets in the package step first.

#include "Common.h"
#include "LuaContainerGenerator.h"

#include <zymIO/Environment.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <tuple>

using namespace zym::Generator;

namespace
{

using Writer = void (*)(std::ostream&, zym::Indentation, const String&, const String&);
const Writer writers[] = {writeVectorDeclaration, writeArrayDeclaration, writeBufferDeclaration, writeValueDeclaration,
                          writeHashSetDeclaration};

// A memory stream whose flush fails.
struct FailingSync : std::stringbuf
{
    int sync() override { return -1; }
};

} // namespace

TEST(ClassWriters, WriteTheirRowsOneFlushAtATimeAndLeaveTheStreamsFailuresToTheCaller)
{
    std::ostringstream hashSet, frame, expected;
    writeHashSetDeclaration(hashSet, zym::Indentation{2}, "Point", "geo::shape");
    expected << std::ifstream(GOLDEN_DIR "/PointHash-at-level-2.txt").rdbuf();
    EXPECT_EQ(expected.str(), hashSet.str());
    writeContainerDeclarations(frame, zym::Indentation{1}, "Point");
    frame << zym::Indentation{40} << "|";
    EXPECT_EQ(std::string(80, ' ') + "|", frame.str());

    // clang-format off
    // A type named String in no namespace: its first row and a row with its qualified name, or nothing.
    for (const auto& [writer, firstRow, row] :
         {std::tuple{writers[0], "class StringVector\n", "\n  void push_back( ::String value );\n"},
          {writers[1], "class StringArray\n", "\n  ::String at( unsigned int ) const;\n"},
          {writers[2], "class StringBuffer : public zymData::Buffer\n", "\n  ::String back() const;\n"},
          {writers[3], "", ""}, {writers[4], "class StringHash\n", "\n  bool contains( ::String value );\n"}})
    // clang-format on
    {
        std::ostringstream text, failed;
        writer(text, zym::Indentation{0}, "String", "");
        EXPECT_EQ(firstRow, text.str().substr(0, text.str().find('\n') + 1));
        EXPECT_NE(std::string::npos, text.str().find(row));
        failed.setstate(std::ios::failbit);
        writer(failed, zym::Indentation{0}, "Ray", "zym::geo");
        EXPECT_EQ("", failed.str());

        FailingSync syncFails;
        std::ostream firstRowOnly(&syncFails);
        writer(firstRowOnly, zym::Indentation{0}, "Ray", "zym::geo");
        EXPECT_TRUE(firstRowOnly.bad() && syncFails.str().find('\n') + 1 == syncFails.str().size()) << syncFails.str();

        std::ofstream full("/dev/full");
        full.exceptions(std::ios::badbit);
        EXPECT_THROW(writer(full, zym::Indentation{0}, "Ray", "zym::geo"), std::ios_base::failure);
    }
}

TEST(ClassWriters, TypedefsRefuseATypeInThirtyThreeNamespaces)
{
    zymIO::Environment::instance().getFilePath(zymIO::Environment::DataFilePath).pushbackPath(TEST_SOURCE_ROOT);
    std::filesystem::create_directories(TEST_SOURCE_ROOT);
    std::string namespaces = "n";
    while (namespaces.size() < 33 * 3 - 2)
        namespaces += "::n";
    std::ofstream(TEST_SOURCE_ROOT "/LuaContainerPrimitives.xml")
        << "<Type name='T' namespace='" << namespaces << "'/>";
    std::stringstream typedefs;
    EXPECT_THROW(writeContainerTypedefs(typedefs), std::runtime_error);
    std::filesystem::remove_all(TEST_SOURCE_ROOT);
}

TEST(Streamdiff, ComparesWholeStreamsWhereverTheyStandAndPutsBackThoseThatDiffer)
{
    // The two texts, the bytes already read from each, the state of the second; the answer.
    // Streams that differ are left where they stood; streams found the same, failed at their end.
    // clang-format off
    for (const auto& [first, second, readFirst, readSecond, secondState, differ] :
         {std::tuple{"", "", 0, 0, std::ios::goodbit, false}, {"same", "same", 0, 0, std::ios::goodbit, false},
          {"abcd", "abce", 0, 0, std::ios::goodbit, true}, {"abc", "abcd", 0, 0, std::ios::goodbit, true},
          {"a b", "ab ", 0, 0, std::ios::goodbit, true}, {"\xff", "\x7f", 0, 0, std::ios::goodbit, true},
          {"abcdef", "abcdef", 2, 0, std::ios::goodbit, false}, {"abcdef", "abcxef", 0, 4, std::ios::goodbit, true},
          {"abcdef", "ab", 3, 1, std::ios::goodbit, true}, {"abcdef", "abcdef", 0, 0, std::ios::eofbit, true},
          {"abcdef", "abcdef", 0, 0, std::ios::failbit, true}})
    // clang-format on
    {
        std::istringstream a(first), b(second);
        a.ignore(readFirst);
        b.ignore(readSecond);
        b.setstate(secondState);
        EXPECT_EQ(differ, streamdiff(a, b)) << '"' << first << "\" vs \"" << second << '"';
        EXPECT_TRUE(
            secondState != std::ios::goodbit ||
            (differ ? a.good() && b.good() && a.tellg() == readFirst && b.tellg() == readSecond : a.fail() && b.fail()))
            << first;
    }
    std::istringstream a("same"), b("same");
    b.exceptions(std::ios::eofbit);
    EXPECT_THROW(streamdiff(a, b), std::ios_base::failure);
}

TEST(Capitalize, ChangesTheFirstCharacterOfACopyOnly)
{
    const String original = "vector of Points";
    EXPECT_EQ("Vector of Points", capitalize(original));
    EXPECT_EQ("vector of Points", original);
    // clang-format off
    for (const auto& [text, upper, lower] : {std::tuple{"VECTOR", "VECTOR", "vECTOR"}, {"", "", ""}, {"3d", "3d", "3d"},
                                             {"Already", "Already", "already"},
                                             {"\xe9t\xe9", "\xe9t\xe9", "\xe9t\xe9"}})
        // clang-format on
        EXPECT_EQ((std::pair<String, String>(upper, lower)), std::pair(capitalize(text), decapitalize(text))) << text;
}
