#include "LuaContainerGenerator.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace
{

std::string lines(const std::vector<std::string>& rows)
{
    std::string text;
    for (const std::string& row : rows)
        text += row + "\n";
    return text;
}

using ClassWriter = void (*)(std::ostream&, zym::Indentation, const String&, const String&);

std::string written(ClassWriter writer, std::uint64_t level, const String& typeName, const String& typeNamespace)
{
    std::ostringstream stream;
    writer(stream, zym::Indentation{level}, typeName, typeNamespace);
    return stream.str();
}

std::string frame(std::uint64_t level, const String& qualifiedName)
{
    std::ostringstream stream;
    writeContainerDeclarations(stream, zym::Indentation{level}, qualifiedName);
    return stream.str();
}

} // namespace

TEST(ClassWriters, VectorAtLevelTwo)
{
    EXPECT_EQ(lines({"    class PointVector",
                     "    {",
                     "      PointVector();",
                     "      PointVector(unsigned int size);",
                     "      ",
                     "      geo::shape::Point at( unsigned int ) const;",
                     "      void push_back( geo::shape::Point value );",
                     "      geo::shape::Point front() const;",
                     "      geo::shape::Point back() const;",
                     "      void resize( unsigned int size );",
                     "      void reserve( unsigned int size );",
                     "      void clear();",
                     "      unsigned int size() const;",
                     "      bool empty() const;",
                     "    };",
                     "    "}),
              written(writeVectorDeclaration, 2, "Point", "geo::shape"));
}

TEST(ClassWriters, ArrayAtLevelOne)
{
    EXPECT_EQ(lines({"  class pointArray",
                     "  {",
                     "    pointArray();",
                     "    ",
                     "    geo::point at( unsigned int ) const;",
                     "    geo::point front() const;",
                     "    geo::point back() const;",
                     "    unsigned int size() const;",
                     "    bool empty() const;",
                     "  };",
                     "  "}),
              written(writeArrayDeclaration, 1, "point", "geo"));
}

TEST(ClassWriters, BufferAtLevelTwo)
{
    EXPECT_EQ(lines({"    class PointBuffer : public zymData::Buffer",
                     "    {",
                     "    public:",
                     "      TOLUA_REFERENCED_CLASS",
                     "      TOLUA_PROTECTED_DESTRUCTOR",
                     "      ",
                     "      PointBuffer();",
                     "      PointBuffer(zym::Name name);",
                     "      ",
                     "      geo::shape::Point at( unsigned int ) const;",
                     "      void push_back( geo::shape::Point value );",
                     "      geo::shape::Point front() const;",
                     "      geo::shape::Point back() const;",
                     "      void resize( unsigned int size );",
                     "      void reserve( unsigned int size );",
                     "      void clear();",
                     "      unsigned int size() const;",
                     "      bool empty() const;",
                     "      void commit();",
                     "      void commit(zym::Index index);",
                     "      void commit(zymData::IndexArray indices);",
                     "      void commit(zym::IndexRange32 range);",
                     "      void print() const;",
                     "      zymData::Format *getFormat();",
                     "    };",
                     "    "}),
              written(writeBufferDeclaration, 2, "Point", "geo::shape"));
}

TEST(ClassWriters, ValueAtLevelTwoAndNoneForATypeNamedString)
{
    EXPECT_EQ(lines({"    class PointValue : public zymData::Value",
                     "    {",
                     "    public:",
                     "      TOLUA_REFERENCED_CLASS",
                     "      TOLUA_PROTECTED_DESTRUCTOR",
                     "      ",
                     "      PointValue();",
                     "      PointValue(zym::Name name);",
                     "      PointValue(geo::shape::Point value);",
                     "      PointValue(zym::Name name, geo::shape::Point value);",
                     "      ",
                     "      void set(geo::shape::Point value);",
                     "      geo::shape::Point get() const;",
                     "      zymData::Format *getFormat();",
                     "    };",
                     "    "}),
              written(writeValueDeclaration, 2, "Point", "geo::shape"));

    EXPECT_EQ("", written(writeValueDeclaration, 2, "String", "zym"));
    EXPECT_EQ("", written(writeValueDeclaration, 0, "String", ""));
    for (const char* lookalike : {"string", "STRING", "Strings", "MyString", "String "})
        EXPECT_NE("", written(writeValueDeclaration, 0, lookalike, "zym")) << lookalike;
    EXPECT_NE("", written(writeVectorDeclaration, 0, "String", "zym"));
    EXPECT_NE("", written(writeBufferDeclaration, 0, "String", "zym"));
}

TEST(ClassWriters, HashSetAtLevelTwo)
{
    EXPECT_EQ(lines({"    class PointHash",
                     "    {",
                     "      PointHash();",
                     "      ",
                     "      struct iterator {};",
                     "      struct const_iterator {};",
                     "      ",
                     "      const_iterator end @ End();",
                     "      const_iterator begin @ Begin();",
                     "      void insert( geo::shape::Point value );",
                     "      bool contains( geo::shape::Point value );",
                     "      unsigned int size() const;",
                     "      bool empty() const;",
                     "    };",
                     "    "}),
              written(writeHashSetDeclaration, 2, "Point", "geo::shape"));
}

TEST(NamespaceFrame, OpensOneScopePerComponentOfTheTextBeforeTheLastSeparator)
{
    const std::string scoped = frame(1, "P::Q::R");
    const std::string expectedStart = lines({"  namespace P", "  {", "    namespace Q", "    {", "      class RVector"});
    const std::string expectedEnd = lines({"      ", "    }", "  }", "  "});
    EXPECT_EQ(expectedStart, scoped.substr(0, expectedStart.size()));
    EXPECT_EQ(expectedEnd, scoped.substr(scoped.size() - expectedEnd.size()));
    EXPECT_NE(std::string::npos, scoped.find("      void set(P::Q::R value);\n"));

    // The writers follow one another directly, each ending in its own separator row.
    std::ostringstream writers;
    for (ClassWriter writer : {writeVectorDeclaration, writeArrayDeclaration, writeBufferDeclaration, writeValueDeclaration})
        writer(writers, zym::Indentation{3}, "R", "P::Q");
    EXPECT_EQ(expectedStart.substr(0, expectedStart.size() - std::string("      class RVector\n").size()) +
                  writers.str() + expectedEnd.substr(std::string("      \n").size()),
              scoped);
}

TEST(NamespaceFrame, WritesNothingWithoutASeparatorAndAnEmptyScopeForAnEmptyNamespace)
{
    EXPECT_EQ("", frame(0, "Point"));
    const std::string global = frame(0, "::Point");
    EXPECT_EQ(lines({"namespace ", "{", "  class PointVector"}), global.substr(0, 33));
    EXPECT_NE(std::string::npos, global.find("  void push_back( ::Point value );\n"));
    EXPECT_EQ(lines({"  ", "}", ""}), global.substr(global.size() - 6));
}
