// What the tool's own runs cannot show: the golden outputs pin every row that a run writes, but
// nothing in the tool calls writeHashSetDeclaration, nor the namespace frame with a name
// that has no namespace.

#include "LuaContainerGenerator.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(HashSetDeclaration, IsItsClassRowByRow)
{
    std::ostringstream stream;
    writeHashSetDeclaration(stream, zym::Indentation{2}, "Point", "geo::shape");
    EXPECT_EQ("    class PointHash\n"
              "    {\n"
              "      PointHash();\n"
              "      \n"
              "      struct iterator {};\n"
              "      struct const_iterator {};\n"
              "      \n"
              "      const_iterator end @ End();\n"
              "      const_iterator begin @ Begin();\n"
              "      void insert( geo::shape::Point value );\n"
              "      bool contains( geo::shape::Point value );\n"
              "      unsigned int size() const;\n"
              "      bool empty() const;\n"
              "    };\n"
              "    \n",
              stream.str());
}

TEST(NamespaceFrame, WritesNothingForANameWithoutNamespace)
{
    std::ostringstream stream;
    writeContainerDeclarations(stream, zym::Indentation{1}, "Point");
    EXPECT_EQ("", stream.str());
}
