// What the tool's runs cannot show: the golden outputs pin every row that a run writes, but
// nothing in the tool calls writeHashSetDeclaration, nor the namespace frame with a name that
// has no namespace.

#include "LuaContainerGenerator.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

TEST(LuaContainerGenerator, WritesTheHashSetClassRowByRowAndNoFrameForANameWithoutNamespace)
{
    std::ostringstream hashSet, frame, expected;
    writeHashSetDeclaration(hashSet, zym::Indentation{2}, "Point", "geo::shape");
    expected << std::ifstream(GOLDEN_DIR "/PointHash-at-level-2.txt").rdbuf();
    EXPECT_EQ(expected.str(), hashSet.str());
    writeContainerDeclarations(frame, zym::Indentation{1}, "Point");
    EXPECT_EQ("", frame.str());
}
