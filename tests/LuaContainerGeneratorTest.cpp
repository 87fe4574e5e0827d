// What the tool's runs cannot show: the golden outputs pin every row that a run writes, but
// nothing in the tool calls writeHashSetDeclaration, nor the namespace frame with a name that
// has no namespace.

#include "LuaContainerGenerator.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(LuaContainerGenerator, WritesTheHashSetClassRowByRowAndNoFrameForANameWithoutNamespace)
{
    std::ostringstream hashSet, frame;
    writeHashSetDeclaration(hashSet, zym::Indentation{2}, "Point", "geo::shape");
    EXPECT_EQ(R"(    class PointHash
    {
      PointHash();
      
      struct iterator {};
      struct const_iterator {};
      
      const_iterator end @ End();
      const_iterator begin @ Begin();
      void insert( geo::shape::Point value );
      bool contains( geo::shape::Point value );
      unsigned int size() const;
      bool empty() const;
    };
    
)",
              hashSet.str());
    writeContainerDeclarations(frame, zym::Indentation{1}, "Point");
    EXPECT_EQ("", frame.str());
}
