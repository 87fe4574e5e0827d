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

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <typeinfo>
#include <utility>

const char* TypeMapPath = "LuaContainerPrimitives.xml";

using zym::Generator::ClassName;
using zym::Generator::QualifiedName;
using zym::Generator::Rows;

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
void writeNamespaceOpenings(Rows& rows, zym::Indentation level, const Vector<String>& components)
{
    for (std::uint64_t i = 0; i < components.size(); ++i)
    {
        rows(level + i, "namespace ", components[i]);
        rows(level + i, "{");
    }
}

// Closes the scopes of writeNamespaceOpenings, innermost first, each at the indentation of its "{".
void writeNamespaceClosings(Rows& rows, zym::Indentation level, std::uint64_t depth)
{
    for (std::uint64_t i = depth; i-- > 0;)
        rows(level + i, "}");
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

// The block of the last text written: its pages are touched already, and the next text reuses them.
std::string spareRoom;

// Room for the text that the type map makes, so that the memory stream does not grow by copying
// what it holds: a Type with names of ordinary length writes about 2.5 KiB to the package file
// and half a KiB to the typedef header, and an include value goes into it once. The count of
// "<Type" is an estimate (one cut by the edge of a block is missed, one inside a comment counts);
// room reserved and never written is never touched, and where the system will not reserve it
// the text grows as it goes.
std::string roomForText()
{
    std::ifstream typeMap(findTypeMap(), std::ios::binary);
    std::uint64_t bytes = 0;
    std::uint64_t types = 0;
    for (char block[1 << 16]; typeMap.read(block, sizeof block) || typeMap.gcount() > 0;)
    {
        const std::string_view text(block, static_cast<std::size_t>(typeMap.gcount()));
        bytes += text.size();
        for (std::size_t at = text.find("<Type"); at != std::string_view::npos; at = text.find("<Type", at + 1))
            ++types;
    }
    std::string room = std::move(spareRoom);
    room.clear();
    try
    {
        room.reserve(static_cast<std::size_t>(4096 * types + bytes + 65536));
    }
    catch (const std::exception&)
    {
    }
    return room;
}

// Builds the text in memory and only then replaces the target with it, in one write.
void writeGeneratedFile(const String& path, void (*generate)(std::ostream&), const char* successText)
{
    std::stringstream text(roomForText(), std::ios::in | std::ios::out);
    generate(text);
    if (!text.fail())
    {
        std::ofstream file(path, std::ios::out | std::ios::trunc);
        if (file.fail())
            std::cerr << "Could not open file'" << path << "'" << std::endl;
        else
        {
            // The text leaves from the stream's own buffer, without a copy. The seek makes the buffer's
            // read end catch up with all that was written, so that the whole text goes in one write.
            text.seekg(0);
            file << text.rdbuf();
            std::cout << successText << path << std::endl;
        }
    }
    spareRoom = std::move(text).str();
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
        String qualifiedName = typeNamespace + "::" + typeName;
        checkNamespaceDepth(type, namespaceComponentCount(std::string_view(qualifiedName).substr(0, qualifiedName.rfind("::"))));
        qualifiedNames.push_back(std::move(qualifiedName));
        if (const char* include = type->Attribute("include"))
            includes.insert(String(include));
    }

    const zym::Indentation level;
    zym::Generator::addCopyright(stream);
    {
        Rows rows(stream);
        for (const String& include : includes)
            rows(level, "$#include <", include, ">");
        rows(level, "$#include <zymLua/generated_container_typedefs.h>");
        rows(level, "$ifile \"zym/Math.tolua\"");
        rows(level);
    }
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

    {
        Rows rows(stream);
        writeNamespaceOpenings(rows, level, components);
    }
    writeVectorDeclaration(stream, level + depth, typeName, typeNamespace);
    writeArrayDeclaration(stream, level + depth, typeName, typeNamespace);
    writeBufferDeclaration(stream, level + depth, typeName, typeNamespace);
    writeValueDeclaration(stream, level + depth, typeName, typeNamespace);
    Rows rows(stream);
    writeNamespaceClosings(rows, level, depth);
    rows(level);
}

// ---------------------------------------------------------------------------------------------
// Class declarations. Each writer is its class, row by row: `level` rows stand at the braces,
// `member` rows one step inside.

void writeVectorDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    const ClassName className{typeName, "Vector"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;
    Rows rows(stream);

    rows(level,  "class ", className);
    rows(level,  "{");
    rows(member, className, "();");
    rows(member, className, "(unsigned int size);");
    rows(member);
    rows(member, qualifiedName, " at( unsigned int ) const;");
    rows(member, "void push_back( ", qualifiedName, " value );");
    rows(member, qualifiedName, " front() const;");
    rows(member, qualifiedName, " back() const;");
    rows(member, "void resize( unsigned int size );");
    rows(member, "void reserve( unsigned int size );");
    rows(member, "void clear();");
    rows(member, "unsigned int size() const;");
    rows(member, "bool empty() const;");
    rows(level,  "};");
    rows(level);
}

void writeArrayDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    const ClassName className{typeName, "Array"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;
    Rows rows(stream);

    rows(level,  "class ", className);
    rows(level,  "{");
    rows(member, className, "();");
    rows(member);
    rows(member, qualifiedName, " at( unsigned int ) const;");
    rows(member, qualifiedName, " front() const;");
    rows(member, qualifiedName, " back() const;");
    rows(member, "unsigned int size() const;");
    rows(member, "bool empty() const;");
    rows(level,  "};");
    rows(level);
}

void writeBufferDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    const ClassName className{typeName, "Buffer"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;
    Rows rows(stream);

    rows(level,  "class ", className, " : public zymData::Buffer");
    rows(level,  "{");
    rows(level,  "public:");
    rows(member, "TOLUA_REFERENCED_CLASS");
    rows(member, "TOLUA_PROTECTED_DESTRUCTOR");
    rows(member);
    rows(member, className, "();");
    rows(member, className, "(zym::Name name);");
    rows(member);
    rows(member, qualifiedName, " at( unsigned int ) const;");
    rows(member, "void push_back( ", qualifiedName, " value );");
    rows(member, qualifiedName, " front() const;");
    rows(member, qualifiedName, " back() const;");
    rows(member, "void resize( unsigned int size );");
    rows(member, "void reserve( unsigned int size );");
    rows(member, "void clear();");
    rows(member, "unsigned int size() const;");
    rows(member, "bool empty() const;");
    rows(member, "void commit();");
    rows(member, "void commit(zym::Index index);");
    rows(member, "void commit(zymData::IndexArray indices);");
    rows(member, "void commit(zym::IndexRange32 range);");
    rows(member, "void print() const;");
    rows(member, "zymData::Format *getFormat();");
    rows(level,  "};");
    rows(level);
}

// The library has no Value container of its own string type: a type named "String" gets none.
void writeValueDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    if (typeName == "String")
        return;

    const ClassName className{typeName, "Value"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;
    Rows rows(stream);

    rows(level,  "class ", className, " : public zymData::Value");
    rows(level,  "{");
    rows(level,  "public:");
    rows(member, "TOLUA_REFERENCED_CLASS");
    rows(member, "TOLUA_PROTECTED_DESTRUCTOR");
    rows(member);
    rows(member, className, "();");
    rows(member, className, "(zym::Name name);");
    rows(member, className, "(", qualifiedName, " value);");
    rows(member, className, "(zym::Name name, ", qualifiedName, " value);");
    rows(member);
    rows(member, "void set(", qualifiedName, " value);");
    rows(member, qualifiedName, " get() const;");
    rows(member, "zymData::Format *getFormat();");
    rows(level,  "};");
    rows(level);
}

// Not part of the package file: the library binds no hash set container yet.
void writeHashSetDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName, const String& typeNamespace)
{
    const ClassName className{typeName, "Hash"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    const zym::Indentation member = level + 1;
    Rows rows(stream);

    rows(level,  "class ", className);
    rows(level,  "{");
    rows(member, className, "();");
    rows(member);
    rows(member, "struct iterator {};");
    rows(member, "struct const_iterator {};");
    rows(member);
    rows(member, "const_iterator end @ End();");
    rows(member, "const_iterator begin @ Begin();");
    rows(member, "void insert( ", qualifiedName, " value );");
    rows(member, "bool contains( ", qualifiedName, " value );");
    rows(member, "unsigned int size() const;");
    rows(member, "bool empty() const;");
    rows(level,  "};");
    rows(level);
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
    {
        Rows rows(stream);
        rows(level);
        rows(level, "#ifndef ", guard);
        rows(level, "#define ", guard);
        rows(level);
        rows(level, "#include <zym/Vec2.h>");
        rows(level, "#include <zym/Vec3.h>");
        rows(level, "#include <zym/Vec4.h>");
        rows(level, "#include <zym/Matrix3x3.h>");
        rows(level, "#include <zym/AffineMatrix4x4.h>");
        rows(level, "#include <zym/Quat.h>");
        rows(level, "#include <zym/Uuid.h>");
        rows(level);
    }

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

        Rows rows(stream);
        writeNamespaceOpenings(rows, level, components);
        rows(inner, "typedef zym::Vector", podSuffix, "< ", qualifiedName, " > ", typeName, "Vector;");
        rows(inner, "typedef zymData::Array< ", qualifiedName, " > ", typeName, "Array;");
        rows(inner, "typedef zymData::BufferT< ", qualifiedName, " > ", typeName, "Buffer;");
        rows(inner, "typedef zymData::ValueT< ", qualifiedName, " > ", typeName, "Value;");
        writeNamespaceClosings(rows, level, depth);
        rows(level);
    }

    Rows rows(stream);
    rows(level);
    rows(level, "#endif //", guard);
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
