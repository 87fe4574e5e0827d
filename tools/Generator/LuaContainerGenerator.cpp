// LuaContainerGenerator: writes the package file of the Lua container classes and the header
// of the container typedefs that it includes, both from the type map.
//
//   LuaContainerGenerator <target file path> <typedef file path>

#include "LuaContainerGenerator.h"
#include "Common.h"
#include "Rows.h"
#include "XmlFile.h"

#include <zym/HashSet.h>
#include <zym/PyString.h>
#include <zym/Vector.h>
#include <zym/Xml.h>
#include <zymIO/Environment.h>

#include <tinyxml.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <typeinfo>

const char* TypeMapPath = "LuaContainerPrimitives.xml";

using zym::Generator::ClassName;
using zym::Generator::QualifiedName;
using zym::Generator::writeRow;

namespace
{

const String& namespaceSeparator()
{
    static const String separator("::");
    return separator;
}

// A type's classes stand inside one scope per namespace component, each a step further in, so
// that its text grows with the square of their number. Real namespaces have one to three.
constexpr std::uint64_t maxNamespaceComponents = 32;

// The number of pieces that pystring::split cuts `text` into at "::".
std::uint64_t namespaceComponentCount(std::string_view text)
{
    std::uint64_t count = 1;
    for (std::size_t at = text.find("::"); at != std::string_view::npos; at = text.find("::", at + 2))
        ++count;
    return count;
}

// Reported like a bad attribute: one line on std::cerr, then the same text as a std::runtime_error.
void checkNamespaceDepth(const TiXmlElement* type, std::uint64_t components)
{
    if (components <= maxNamespaceComponents)
        return;
    const std::string line = "TypeMap: the Type on row " + std::to_string(type->Row()) + " lies in more than " +
                             std::to_string(maxNamespaceComponents) + " nested namespaces.";
    std::cerr << line << std::endl;
    throw std::runtime_error(line);
}

// Opens one scope per component, each one level deeper than the one around it.
void writeNamespaceOpenings(std::ostream& stream, zym::Indentation level, const Vector<String>& components)
{
    for (std::uint64_t i = 0; i < components.size(); ++i)
    {
        writeRow(stream, level + i, "namespace ", components[i]);
        writeRow(stream, level + i, "{");
    }
}

// Closes the scopes of writeNamespaceOpenings, innermost first, each at the indentation of its "{".
void writeNamespaceClosings(std::ostream& stream, zym::Indentation level, std::uint64_t depth)
{
    for (std::uint64_t i = depth; i-- > 0;)
        writeRow(stream, level + i, "}");
}

String findTypeMap()
{
    return zymIO::Environment::instance().getFilePath(zymIO::Environment::DataFilePath).find(String(TypeMapPath));
}

// Says why the type map could not be loaded and marks `stream` as failed, so that the text it
// holds is never taken for a whole one and the file writer leaves its target alone.
bool reportLoadFailure(std::ostream& stream, const String& fullPath, std::uint64_t errorRow, const char* errorDesc)
{
    std::cerr << "TypeMap: Could not load " << TypeMapPath << " (full file path: '" << fullPath
              << "'). Error on row " << errorRow << ": " << errorDesc << std::endl;
    stream.setstate(std::ios::failbit);
    return false;
}

bool loadTypeMap(TiXmlDocument& document, const String& fullPath, std::ostream& stream)
{
    if (const std::optional<XmlFailure> failure = loadXmlFile(document))
        return reportLoadFailure(stream, fullPath, failure->row, failure->description.c_str());
    return true;
}

// Room for the text that the type map makes, so that the memory stream does not grow by copying
// what it holds: a Type with names of ordinary length writes about 2.5 KiB to the package file
// and half a KiB to the typedef header, and an include value goes into it once. Memory that is
// reserved and never written is never touched: too much costs address space, too little growth.
std::string roomForText()
{
    std::ifstream typeMap(findTypeMap(), std::ios::binary);
    std::uint64_t bytes = 0;
    std::uint64_t elements = 0;
    for (char block[1 << 16]; typeMap.read(block, sizeof block) || typeMap.gcount() > 0;)
    {
        const auto count = static_cast<std::size_t>(typeMap.gcount());
        bytes += count;
        elements += static_cast<std::uint64_t>(std::count(block, block + count, '<'));
    }
    std::string room;
    room.reserve(static_cast<std::size_t>(4096 * elements + bytes + 65536));
    return room;
}

// Builds the text in memory and only then replaces the target with it, in one write.
void writeGeneratedFile(const String& path, void (*generate)(std::ostream&), const char* successText)
{
    std::stringstream text(roomForText(), std::ios::in | std::ios::out);
    generate(text);
    if (text.fail())
        return;

    std::ofstream file(path, std::ios::out | std::ios::trunc);
    if (file.fail())
    {
        std::cerr << "Could not open file'" << path << "'" << std::endl;
        return;
    }
    // The text leaves from the stream's own buffer, without a copy. The seek makes the buffer's
    // read end catch up with all that was written, so that the whole text goes in one write.
    text.seekg(0);
    file << text.rdbuf();
    std::cout << successText << path << std::endl;
}

// A standard stream that was closed is opened on /dev/null: otherwise a target would be opened
// under its number, and the success line would be written into it.
void keepStandardStreamsOpen()
{
    for (int descriptor = 0; descriptor <= 2; ++descriptor)
        if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) < 0)
            std::_Exit(1);
}

// An exception that leaves main ends the run with status 1. A failure of the type map has printed
// its report before it raised a plain std::runtime_error; anything else is told here in one line.
[[noreturn]] void endOnUncaughtException()
{
    if (const std::exception_ptr error = std::current_exception())
    {
        try
        {
            std::rethrow_exception(error);
        }
        catch (const std::exception& other)
        {
            if (typeid(other) != typeid(std::runtime_error))
                std::cerr << "LuaContainerGenerator: " << other.what() << std::endl;
        }
        catch (...)
        {
            std::cerr << "LuaContainerGenerator: unknown exception" << std::endl;
        }
    }
    std::cout.flush();
    std::cerr.flush();
    std::_Exit(1);
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Package file

void writeContainerDeclarations(const String& path)
{
    writeGeneratedFile(path, writeContainerDeclarations, "Updated lua container declarations in file ");
}

void writeContainerDeclarations(std::ostream& stream)
{
    const String fullPath = findTypeMap();

    HashSet<String> includes;
    Vector<String> qualifiedNames;
    for (const char* defaultInclude : {"zym/Vector.h", "zym/HashSet.h", "zymData/Array.h", "zymData/Buffer.h", "zymData/Value.h"})
        includes.insert(String(defaultInclude));

    TiXmlDocument document(fullPath.c_str());
    if (!loadTypeMap(document, fullPath, stream))
        return;

    for (const TiXmlElement* type = document.FirstChildElement("Type"); type != nullptr;
         type = type->NextSiblingElement("Type"))
    {
        const String typeName = zym::parseAttribute<String>(type, "name");
        const String typeNamespace = zym::parseAttribute<String>(type, "namespace");
        const String qualifiedName = typeNamespace + "::" + typeName;
        checkNamespaceDepth(type, namespaceComponentCount(std::string_view(qualifiedName).substr(0, qualifiedName.rfind("::"))));
        qualifiedNames.push_back(qualifiedName);
        if (const char* include = type->Attribute("include"))
            includes.insert(String(include));
    }

    const zym::Indentation level;
    zym::Generator::addCopyright(stream);
    for (const String& include : includes)
        writeRow(stream, level, "$#include <", include, ">");
    writeRow(stream, level, "$#include <zymLua/generated_container_typedefs.h>");
    writeRow(stream, level, "$ifile \"zym/Math.tolua\"");
    writeRow(stream, level);

    for (const String& qualifiedName : qualifiedNames)
        writeContainerDeclarations(stream, level, qualifiedName);
}

void writeContainerDeclarations(std::ostream& stream, zym::Indentation level, const String& qualifiedName)
{
    const int pos = pystring::rfind(qualifiedName, namespaceSeparator(), 0, 2147483647);
    if (pos < 0)
        return;
    const std::size_t cut = static_cast<std::size_t>(pos);
    const String typeNamespace = qualifiedName.substr(0, cut);
    const String typeName = qualifiedName.substr(cut + 2);

    Vector<String> components;
    pystring::split(typeNamespace, components, namespaceSeparator(), -1);
    const std::uint64_t depth = components.size();

    writeNamespaceOpenings(stream, level, components);
    writeVectorDeclaration(stream, level + depth, typeName, typeNamespace);
    writeArrayDeclaration(stream, level + depth, typeName, typeNamespace);
    writeBufferDeclaration(stream, level + depth, typeName, typeNamespace);
    writeValueDeclaration(stream, level + depth, typeName, typeNamespace);
    writeNamespaceClosings(stream, level, depth);
    writeRow(stream, level);
}

// ---------------------------------------------------------------------------------------------
// Class declarations. Each writer is its class, row by row: `level` rows stand at the braces,
// `member` rows one step inside.

void writeVectorDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    const ClassName className{typeName, "Vector"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;

    writeRow(stream, level,  "class ", className);
    writeRow(stream, level,  "{");
    writeRow(stream, member, className, "();");
    writeRow(stream, member, className, "(unsigned int size);");
    writeRow(stream, member);
    writeRow(stream, member, qualifiedName, " at( unsigned int ) const;");
    writeRow(stream, member, "void push_back( ", qualifiedName, " value );");
    writeRow(stream, member, qualifiedName, " front() const;");
    writeRow(stream, member, qualifiedName, " back() const;");
    writeRow(stream, member, "void resize( unsigned int size );");
    writeRow(stream, member, "void reserve( unsigned int size );");
    writeRow(stream, member, "void clear();");
    writeRow(stream, member, "unsigned int size() const;");
    writeRow(stream, member, "bool empty() const;");
    writeRow(stream, level,  "};");
    writeRow(stream, level);
}

void writeArrayDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    const ClassName className{typeName, "Array"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;

    writeRow(stream, level,  "class ", className);
    writeRow(stream, level,  "{");
    writeRow(stream, member, className, "();");
    writeRow(stream, member);
    writeRow(stream, member, qualifiedName, " at( unsigned int ) const;");
    writeRow(stream, member, qualifiedName, " front() const;");
    writeRow(stream, member, qualifiedName, " back() const;");
    writeRow(stream, member, "unsigned int size() const;");
    writeRow(stream, member, "bool empty() const;");
    writeRow(stream, level,  "};");
    writeRow(stream, level);
}

void writeBufferDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    const ClassName className{typeName, "Buffer"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;

    writeRow(stream, level,  "class ", className, " : public zymData::Buffer");
    writeRow(stream, level,  "{");
    writeRow(stream, level,  "public:");
    writeRow(stream, member, "TOLUA_REFERENCED_CLASS");
    writeRow(stream, member, "TOLUA_PROTECTED_DESTRUCTOR");
    writeRow(stream, member);
    writeRow(stream, member, className, "();");
    writeRow(stream, member, className, "(zym::Name name);");
    writeRow(stream, member);
    writeRow(stream, member, qualifiedName, " at( unsigned int ) const;");
    writeRow(stream, member, "void push_back( ", qualifiedName, " value );");
    writeRow(stream, member, qualifiedName, " front() const;");
    writeRow(stream, member, qualifiedName, " back() const;");
    writeRow(stream, member, "void resize( unsigned int size );");
    writeRow(stream, member, "void reserve( unsigned int size );");
    writeRow(stream, member, "void clear();");
    writeRow(stream, member, "unsigned int size() const;");
    writeRow(stream, member, "bool empty() const;");
    writeRow(stream, member, "void commit();");
    writeRow(stream, member, "void commit(zym::Index index);");
    writeRow(stream, member, "void commit(zymData::IndexArray indices);");
    writeRow(stream, member, "void commit(zym::IndexRange32 range);");
    writeRow(stream, member, "void print() const;");
    writeRow(stream, member, "zymData::Format *getFormat();");
    writeRow(stream, level,  "};");
    writeRow(stream, level);
}

// The library has no Value container of its own string type: a type named "String" gets none.
void writeValueDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    if (typeName == "String")
        return;

    const ClassName className{typeName, "Value"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;

    writeRow(stream, level,  "class ", className, " : public zymData::Value");
    writeRow(stream, level,  "{");
    writeRow(stream, level,  "public:");
    writeRow(stream, member, "TOLUA_REFERENCED_CLASS");
    writeRow(stream, member, "TOLUA_PROTECTED_DESTRUCTOR");
    writeRow(stream, member);
    writeRow(stream, member, className, "();");
    writeRow(stream, member, className, "(zym::Name name);");
    writeRow(stream, member, className, "(", qualifiedName, " value);");
    writeRow(stream, member, className, "(zym::Name name, ", qualifiedName, " value);");
    writeRow(stream, member);
    writeRow(stream, member, "void set(", qualifiedName, " value);");
    writeRow(stream, member, qualifiedName, " get() const;");
    writeRow(stream, member, "zymData::Format *getFormat();");
    writeRow(stream, level,  "};");
    writeRow(stream, level);
}

// Not part of the package file: the library binds no hash set container yet.
void writeHashSetDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    const ClassName className{typeName, "Hash"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;

    writeRow(stream, level,  "class ", className);
    writeRow(stream, level,  "{");
    writeRow(stream, member, className, "();");
    writeRow(stream, member);
    writeRow(stream, member, "struct iterator {};");
    writeRow(stream, member, "struct const_iterator {};");
    writeRow(stream, member);
    writeRow(stream, member, "const_iterator end @ End();");
    writeRow(stream, member, "const_iterator begin @ Begin();");
    writeRow(stream, member, "void insert( ", qualifiedName, " value );");
    writeRow(stream, member, "bool contains( ", qualifiedName, " value );");
    writeRow(stream, member, "unsigned int size() const;");
    writeRow(stream, member, "bool empty() const;");
    writeRow(stream, level,  "};");
    writeRow(stream, level);
}

// ---------------------------------------------------------------------------------------------
// Typedef header

void writeContainerTypedefs(const String& path)
{
    writeGeneratedFile(path, writeContainerTypedefs, "Updated lua container typedefs in file ");
}

void writeContainerTypedefs(std::ostream& stream)
{
    static const char* const guard = "ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H";
    const String fullPath = findTypeMap();
    const zym::Indentation level;

    // The banner row: the banner's own bytes, then the row's newline.
    zym::Generator::addCopyright(stream);
    writeRow(stream, level);
    writeRow(stream, level, "#ifndef ", guard);
    writeRow(stream, level, "#define ", guard);
    writeRow(stream, level);
    writeRow(stream, level, "#include <zym/Vec2.h>");
    writeRow(stream, level, "#include <zym/Vec3.h>");
    writeRow(stream, level, "#include <zym/Vec4.h>");
    writeRow(stream, level, "#include <zym/Matrix3x3.h>");
    writeRow(stream, level, "#include <zym/AffineMatrix4x4.h>");
    writeRow(stream, level, "#include <zym/Quat.h>");
    writeRow(stream, level, "#include <zym/Uuid.h>");
    writeRow(stream, level);

    TiXmlDocument document(fullPath.c_str());
    if (!loadTypeMap(document, fullPath, stream))
        return;

    for (const TiXmlElement* type = document.FirstChildElement("Type"); type != nullptr;
         type = type->NextSiblingElement("Type"))
    {
        const String typeName = zym::parseAttribute<String>(type, "name");
        const String typeNamespace = zym::parseAttribute<String>(type, "namespace");
        const bool isPOD = type->Attribute("isPOD") == nullptr || zym::parseAttribute<bool>(type, "isPOD");

        Vector<String> components;
        pystring::split(typeNamespace, components, namespaceSeparator(), -1);
        const std::uint64_t depth = components.size();
        checkNamespaceDepth(type, depth);
        const QualifiedName qualifiedName{typeNamespace, typeName};
        const std::string_view podSuffix = isPOD ? "POD" : "";
        const zym::Indentation inner = level + depth;

        writeNamespaceOpenings(stream, level, components);
        writeRow(stream, inner, "typedef zym::Vector", podSuffix, "< ", qualifiedName, " > ", typeName, "Vector;");
        writeRow(stream, inner, "typedef zymData::Array< ", qualifiedName, " > ", typeName, "Array;");
        writeRow(stream, inner, "typedef zymData::BufferT< ", qualifiedName, " > ", typeName, "Buffer;");
        writeRow(stream, inner, "typedef zymData::ValueT< ", qualifiedName, " > ", typeName, "Value;");
        writeNamespaceClosings(stream, level, depth);
        writeRow(stream, level);
    }

    writeRow(stream, level);
    writeRow(stream, level, "#endif //", guard);
}

// ---------------------------------------------------------------------------------------------

int main(int argc, char** argv)
{
    std::set_terminate(endOnUncaughtException);
    keepStandardStreamsOpen();
    // A reader that has gone, or a limit on file size, makes a write fail like any other.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);

    if (argc <= 2)
    {
        const char* programName = argc > 0 && argv[0] != nullptr ? argv[0] : "";
        std::cerr << "Usage: " << programName << "<target file path> <typedef file path>" << std::endl;
        return -1;
    }

    zymIO::Environment& environment = zymIO::Environment::instance();
    environment.getFilePath(zymIO::Environment::DataFilePath).pushbackPath(SourceRootPath);
    environment.getFilePath(zymIO::Environment::DataFilePath).pushbackPath(String::format("%s/data", SourceRootPath));
    environment.getFilePath(zymIO::Environment::ComponentFilePath).pushbackPath(SourceRootPath);
    environment.getFilePath(zymIO::Environment::ComponentFilePath).pushbackPath(String::format("%s/Components/zym", SourceRootPath));

    const String targetFilePath(argv[1]);
    const String typedefFilePath(argv[2]);
    writeContainerDeclarations(targetFilePath);
    writeContainerTypedefs(typedefFilePath);
    return 0;
}
