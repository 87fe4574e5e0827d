// LuaContainerGenerator: writes the package file of the Lua container classes and the header
// of the container typedefs that it includes, both from the type map.
//
//   LuaContainerGenerator <target file path> <typedef file path>

#include "LuaContainerGenerator.h"
#include "Common.h"
#include "XmlFile.h"

#include <zym/HashSet.h>
#include <zym/PyString.h>
#include <zym/ReportedError.h>
#include <zym/Vector.h>
#include <zym/Xml.h>
#include <zymIO/Environment.h>

#include <tinyxml.h>

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

const char* TypeMapPath = "LuaContainerPrimitives.xml";

namespace
{

// ---------------------------------------------------------------------------------------------
// Rows

// A type's name in its namespace, as "zym::geo::Ray".
struct QualifiedName
{
    std::string_view typeNamespace;
    std::string_view typeName;
};

// A container class's name, as "RayVector".
struct ClassName
{
    std::string_view typeName;
    std::string_view container;
};

// The rows of a text on one stream: rows(indentation, pieces...) writes one row, its indentation
// (two blanks per level), its pieces and a line end, and flushes the stream as std::endl does.
class Rows
{
public:
    explicit Rows(std::ostream& target) : stream(target) {}

    template <typename... Pieces>
    void operator()(zym::Indentation indentation, const Pieces&... pieces)
    {
        const std::size_t blanks = 2 * indentation.level;
        const std::size_t size = blanks + (length(pieces) + ... + 1);
        std::string large; // for a row that does not fit the room at hand
        char* const row = size <= sizeof room ? room : (large.resize(size), large.data());
        char* at = std::fill_n(row, blanks, ' ');
        ((at = copy(at, pieces)), ...);
        *at = '\n';
        stream.write(row, static_cast<std::streamsize>(size)); // composed whole: the row reaches the stream in one write
        stream.flush();
    }

private:
    template <std::size_t size>
    static std::size_t length(const char (&)[size])
    {
        return size - 1;
    }
    static std::size_t length(std::string_view text) { return text.size(); }
    static std::size_t length(const QualifiedName& name) { return name.typeNamespace.size() + 2 + name.typeName.size(); }
    static std::size_t length(const ClassName& name) { return name.typeName.size() + name.container.size(); }

    template <std::size_t size>
    static char* copy(char* at, const char (&literal)[size])
    {
        return std::copy(literal, literal + size - 1, at);
    }
    static char* copy(char* at, std::string_view text) { return std::copy(text.begin(), text.end(), at); }
    static char* copy(char* at, const QualifiedName& name)
    {
        return copy(copy(copy(at, name.typeNamespace), "::"), name.typeName);
    }
    static char* copy(char* at, const ClassName& name) { return copy(copy(at, name.typeName), name.container); }

    std::ostream& stream;
    char room[256];
};

// ---------------------------------------------------------------------------------------------
// Namespaces

// A type's classes stand inside one scope per namespace component, each a step further in, so that
// its text grows with the square of their number. Real namespaces have one to three components.
constexpr std::uint64_t maxNamespaceDepth = 32;

// pystring::rfind searches up to its end argument: this one is beyond any text.
constexpr int wholeText = std::numeric_limits<int>::max();

// Both steps refuse a type whose namespace, cut from the qualified name at its last "::" as the
// package step cuts it, has more components than maxNamespaceDepth; the typedef step's namespace
// never has more.
void checkNamespaceDepth(const TiXmlElement* type, std::string_view qualifiedName)
{
    const std::string_view typeNamespace = qualifiedName.substr(0, qualifiedName.rfind("::"));
    std::uint64_t depth = 1; // the components that writeInNamespaces cuts it into
    for (std::size_t at = typeNamespace.find("::"); at != std::string_view::npos; at = typeNamespace.find("::", at + 2))
        ++depth;
    if (depth > maxNamespaceDepth)
        zym::raiseReported(std::runtime_error("TypeMap: the Type on row " + std::to_string(type->Row()) +
                                              " lies in more than " + std::to_string(maxNamespaceDepth) +
                                              " nested namespaces."));
}

// Writes `body` inside one scope per component of `typeNamespace`, which is cut at each "::" from
// the left (so that the empty text is one empty component), each scope a level further in than the
// one around it; then closes them again, each "}" at the indentation of its "{", and writes the
// empty row that ends a type's text. `body` gets the indentation inside the innermost scope.
template <typename Body>
void writeInNamespaces(Rows& rows, zym::Indentation level, std::string_view typeNamespace, Body body)
{
    std::uint64_t depth = 0;
    for (std::size_t from = 0;;)
    {
        const std::size_t cut = typeNamespace.find("::", from);
        rows(level + depth, "namespace ", typeNamespace.substr(from, cut - from));
        rows(level + depth++, "{");
        if (cut == std::string_view::npos)
            break;
        from = cut + 2;
    }
    body(level + depth);
    while (depth-- > 0)
        rows(level + depth, "}");
    rows(level);
}

// ---------------------------------------------------------------------------------------------
// The type map and the file writer

// The control bytes of a message as the XML reader writes them, "&#x0A;", so that it stays one
// line and writes nothing that a terminal would take for a command.
std::string escapedControlBytes(std::string_view text)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string escaped;
    for (const char byte : text)
    {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x20)
            escaped.append("&#x").append(1, digits[code >> 4]).append(1, digits[code & 0xf]).append(";");
        else
            escaped += byte;
    }
    return escaped;
}

String findTypeMap()
{
    return zymIO::Environment::instance().getFilePath(zymIO::Environment::DataFilePath).find(String(TypeMapPath));
}

// The slot among a stream's words (iword) where a generator marks a type map that it could not
// load, so that the file writer leaves its target alone; the stream's state stays the caller's.
int loadFailureSlot()
{
    static const int slot = std::ios_base::xalloc();
    return slot;
}

// Loads the type map, or says why it cannot and marks `stream`.
bool loadTypeMap(TiXmlDocument& document, const String& fullPath, std::ostream& stream)
{
    const std::optional<XmlFailure> failure = loadXmlFile(document);
    if (!failure)
        return true;
    std::cerr << "TypeMap: Could not load " << TypeMapPath << " (full file path: '" << fullPath << "'). Error on row "
              << failure->row << ": " << failure->description << std::endl;
    stream.iword(loadFailureSlot()) = 1;
    return false;
}

// Room for a text, so that the memory stream does not grow by copying what it holds: a map of
// ordinary types makes a package file of about 40 times its size, a typedef header of about 8
// times. Room that is never written is never touched, but it counts against the limits of address
// space and data: at most a GiB, and a quarter of either limit. Past that, or where the room cannot
// be had, the text grows as it goes.
std::string roomForText(std::uint64_t bytesPerMapByte)
{
    std::uint64_t room = std::uint64_t(1) << 30;
    for (const int resource : {RLIMIT_AS, RLIMIT_DATA})
    {
        rlimit limit = {};
        if (::getrlimit(resource, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
            room = std::min<std::uint64_t>(room, limit.rlim_cur / 4);
    }
    struct stat typeMap = {};
    std::string text;
    if (::stat(findTypeMap().c_str(), &typeMap) == 0)
        try
        {
            text.reserve(static_cast<std::size_t>(
                std::min<std::uint64_t>(room, bytesPerMapByte * static_cast<std::uint64_t>(typeMap.st_size))));
        }
        catch (const std::bad_alloc&)
        {}
    return text;
}

// The directories of the data search list, in the order in which main appends them.
std::array<String, 2> dataDirectories() { return {String(SourceRootPath), String::format("%s/data", SourceRootPath)}; }

// The path that opening `path` for writing would create or empty: links followed, also one whose
// target does not exist yet.
std::filesystem::path followLinks(std::filesystem::path path)
{
    std::error_code error;
    for (int hops = 0; hops < 40 && std::filesystem::is_symlink(std::filesystem::symlink_status(path, error)); ++hops)
    {
        const std::filesystem::path target = std::filesystem::read_symlink(path, error);
        if (error)
            break;
        path = path.parent_path() / target;
    }
    return path;
}

// Whether writing `target` writes `source`: the same file (by device and inode, so that links of
// either kind count), or, where neither exists yet, the same name in the same directory, each
// reached through its links.
bool writesTo(const String& target, const String& source)
{
    struct stat written = {}, read = {};
    const bool targetExists = ::stat(target.c_str(), &written) == 0;
    const bool sourceExists = ::stat(source.c_str(), &read) == 0;
    if (targetExists || sourceExists)
        return targetExists && sourceExists && written.st_dev == read.st_dev && written.st_ino == read.st_ino;
    const std::filesystem::path created = followLinks(target.c_str()), place = followLinks(source.c_str());
    const auto directoryOf = [](const std::filesystem::path& file) {
        return file.has_parent_path() ? file.parent_path().string() : std::string(".");
    };
    return created.filename() == place.filename() && ::stat(directoryOf(created).c_str(), &written) == 0 &&
           ::stat(directoryOf(place).c_str(), &read) == 0 && written.st_dev == read.st_dev &&
           written.st_ino == read.st_ino;
}

// A target that is one of the run's sources, the type map or the banner, would destroy it, and one
// where the tool looks for a source would become that source for every later run: the run stops
// before it opens such a target.
void refuseToWriteSources(const String& path)
{
    for (const String& directory : dataDirectories())
        for (const auto& [name, kind] :
             {std::pair{TypeMapPath, "type map"}, {zym::Generator::copyrightFileName, "banner"}})
        {
            const String source = directory + "/" + name;
            if (!writesTo(path, source))
                continue;
            struct stat status = {};
            zym::raiseReported(std::runtime_error(
                ::stat(source.c_str(), &status) == 0
                    ? "LuaContainerGenerator: will not overwrite the " + std::string(kind) + " '" +
                          escapedControlBytes(source) + "' with the target '" + escapedControlBytes(path) + "'"
                    : "LuaContainerGenerator: will not write the target '" + escapedControlBytes(path) +
                          "' where the " + kind + " is looked up: '" + escapedControlBytes(source) + "'"));
        }
}

// Builds the whole text in memory, and only then replaces the target with it, in one write.
void writeGeneratedFile(const String& path, void (*generate)(std::ostream&), std::uint64_t bytesPerMapByte,
                        const char* successText)
{
    std::stringstream text(roomForText(bytesPerMapByte), std::ios::in | std::ios::out);
    text.exceptions(std::ios::badbit); // memory that runs out ends the run, not the text
    generate(text);
    if (text.iword(loadFailureSlot()) != 0)
        return;
    refuseToWriteSources(path);
    std::ofstream file(path, std::ios::out | std::ios::trunc);
    if (file.fail())
    {
        std::cerr << "Could not open file'" << path << "'" << std::endl;
        return;
    }
    file << std::move(text).str();
    std::cout << successText << path << std::endl;
}

// ---------------------------------------------------------------------------------------------
// The end of a run

// A standard stream that was closed is opened on /dev/null: otherwise a target would be opened
// under its number, and the success line would be written into it.
void keepStandardStreamsOpen()
{
    for (int descriptor = 0; descriptor <= 2; ++descriptor)
        if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) < 0)
            std::_Exit(1);
}

// An exception that leaves main ends the run with status 1. A zym::ReportedError has been told
// already; anything else is told here, in one line.
[[noreturn]] void endOnUncaughtException()
{
    try
    {
        if (std::current_exception())
            throw;
    }
    catch (const zym::ReportedError&)
    {}
    catch (const std::exception& error)
    {
        std::cerr << "LuaContainerGenerator: " << escapedControlBytes(error.what()) << std::endl;
    }
    catch (...)
    {
        std::cerr << "LuaContainerGenerator: unknown exception" << std::endl;
    }
    std::_Exit(1);
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Package file

void writeContainerDeclarations(const String& path)
{
    writeGeneratedFile(path, writeContainerDeclarations, 40, "Updated lua container declarations in file ");
}

void writeContainerDeclarations(std::ostream& stream)
{
    const String fullPath = findTypeMap();

    HashSet<String> includes;
    Vector<String> qualifiedNames;
    for (const char* path : {"zym/Vector.h", "zym/HashSet.h", "zymData/Array.h", "zymData/Buffer.h", "zymData/Value.h"})
        includes.insert(String(path));

    TiXmlDocument document(fullPath.c_str());
    if (!loadTypeMap(document, fullPath, stream))
        return;

    for (const TiXmlElement* type = document.FirstChildElement("Type"); type != nullptr;
         type = type->NextSiblingElement("Type"))
    {
        const String typeName = zym::parseAttribute<String>(type, "name");
        const String typeNamespace = zym::parseAttribute<String>(type, "namespace");
        String qualifiedName = typeNamespace + "::" + typeName;
        checkNamespaceDepth(type, qualifiedName);
        qualifiedNames.push_back(std::move(qualifiedName));
        if (const char* include = type->Attribute("include"))
            includes.insert(String(include));
    }

    const zym::Indentation level;
    Rows rows(stream);
    zym::Generator::addCopyright(stream);
    for (const String& include : includes)
        rows(level, "$#include <", include, ">");
    rows(level, "$#include <zymLua/generated_container_typedefs.h>");
    rows(level, "$ifile \"zym/Math.tolua\"");
    rows(level);
    for (const String& qualifiedName : qualifiedNames)
        writeContainerDeclarations(stream, level, qualifiedName);
}

void writeContainerDeclarations(std::ostream& stream, zym::Indentation level, const String& qualifiedName)
{
    static const String separator("::");
    const int cut = pystring::rfind(qualifiedName, separator, 0, wholeText);
    if (cut < 0)
        return;
    const String typeNamespace = qualifiedName.substr(0, static_cast<std::size_t>(cut));
    const String typeName = qualifiedName.substr(static_cast<std::size_t>(cut) + 2);

    Rows rows(stream);
    writeInNamespaces(rows, level, typeNamespace, [&](zym::Indentation inner) {
        writeVectorDeclaration(stream, inner, typeName, typeNamespace);
        writeArrayDeclaration(stream, inner, typeName, typeNamespace);
        writeBufferDeclaration(stream, inner, typeName, typeNamespace);
        writeValueDeclaration(stream, inner, typeName, typeNamespace);
    });
}

// ---------------------------------------------------------------------------------------------
// Class declarations. Each writer is its class, row by row: `level` rows stand at the braces,
// `level + 1` rows one step inside.

void writeVectorDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                            const String& typeNamespace)
{
    const ClassName className{typeName, "Vector"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    Rows rows(stream);

    rows(level, "class ", className);
    rows(level, "{");
    rows(level + 1, className, "();");
    rows(level + 1, className, "(unsigned int size);");
    rows(level + 1);
    rows(level + 1, qualifiedName, " at( unsigned int ) const;");
    rows(level + 1, "void push_back( ", qualifiedName, " value );");
    rows(level + 1, qualifiedName, " front() const;");
    rows(level + 1, qualifiedName, " back() const;");
    rows(level + 1, "void resize( unsigned int size );");
    rows(level + 1, "void reserve( unsigned int size );");
    rows(level + 1, "void clear();");
    rows(level + 1, "unsigned int size() const;");
    rows(level + 1, "bool empty() const;");
    rows(level, "};");
    rows(level);
}

void writeArrayDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                           const String& typeNamespace)
{
    const ClassName className{typeName, "Array"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    Rows rows(stream);

    rows(level, "class ", className);
    rows(level, "{");
    rows(level + 1, className, "();");
    rows(level + 1);
    rows(level + 1, qualifiedName, " at( unsigned int ) const;");
    rows(level + 1, qualifiedName, " front() const;");
    rows(level + 1, qualifiedName, " back() const;");
    rows(level + 1, "unsigned int size() const;");
    rows(level + 1, "bool empty() const;");
    rows(level, "};");
    rows(level);
}

void writeBufferDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                            const String& typeNamespace)
{
    const ClassName className{typeName, "Buffer"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    Rows rows(stream);

    rows(level, "class ", className, " : public zymData::Buffer");
    rows(level, "{");
    rows(level, "public:");
    rows(level + 1, "TOLUA_REFERENCED_CLASS");
    rows(level + 1, "TOLUA_PROTECTED_DESTRUCTOR");
    rows(level + 1);
    rows(level + 1, className, "();");
    rows(level + 1, className, "(zym::Name name);");
    rows(level + 1);
    rows(level + 1, qualifiedName, " at( unsigned int ) const;");
    rows(level + 1, "void push_back( ", qualifiedName, " value );");
    rows(level + 1, qualifiedName, " front() const;");
    rows(level + 1, qualifiedName, " back() const;");
    rows(level + 1, "void resize( unsigned int size );");
    rows(level + 1, "void reserve( unsigned int size );");
    rows(level + 1, "void clear();");
    rows(level + 1, "unsigned int size() const;");
    rows(level + 1, "bool empty() const;");
    rows(level + 1, "void commit();");
    rows(level + 1, "void commit(zym::Index index);");
    rows(level + 1, "void commit(zymData::IndexArray indices);");
    rows(level + 1, "void commit(zym::IndexRange32 range);");
    rows(level + 1, "void print() const;");
    rows(level + 1, "zymData::Format *getFormat();");
    rows(level, "};");
    rows(level);
}

// The library has no Value container of its own string type: a type named "String" gets none.
void writeValueDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                           const String& typeNamespace)
{
    if (typeName == "String")
        return;

    const ClassName className{typeName, "Value"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    Rows rows(stream);

    rows(level, "class ", className, " : public zymData::Value");
    rows(level, "{");
    rows(level, "public:");
    rows(level + 1, "TOLUA_REFERENCED_CLASS");
    rows(level + 1, "TOLUA_PROTECTED_DESTRUCTOR");
    rows(level + 1);
    rows(level + 1, className, "();");
    rows(level + 1, className, "(zym::Name name);");
    rows(level + 1, className, "(", qualifiedName, " value);");
    rows(level + 1, className, "(zym::Name name, ", qualifiedName, " value);");
    rows(level + 1);
    rows(level + 1, "void set(", qualifiedName, " value);");
    rows(level + 1, qualifiedName, " get() const;");
    rows(level + 1, "zymData::Format *getFormat();");
    rows(level, "};");
    rows(level);
}

// Not part of the package file: the library binds no hash set container yet.
void writeHashSetDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                             const String& typeNamespace)
{
    const ClassName className{typeName, "Hash"};
    const QualifiedName qualifiedName{typeNamespace, typeName};
    Rows rows(stream);

    rows(level, "class ", className);
    rows(level, "{");
    rows(level + 1, className, "();");
    rows(level + 1);
    rows(level + 1, "struct iterator {};");
    rows(level + 1, "struct const_iterator {};");
    rows(level + 1);
    rows(level + 1, "const_iterator end @ End();");
    rows(level + 1, "const_iterator begin @ Begin();");
    rows(level + 1, "void insert( ", qualifiedName, " value );");
    rows(level + 1, "bool contains( ", qualifiedName, " value );");
    rows(level + 1, "unsigned int size() const;");
    rows(level + 1, "bool empty() const;");
    rows(level, "};");
    rows(level);
}

// ---------------------------------------------------------------------------------------------
// Typedef header

void writeContainerTypedefs(const String& path)
{
    writeGeneratedFile(path, writeContainerTypedefs, 8, "Updated lua container typedefs in file ");
}

void writeContainerTypedefs(std::ostream& stream)
{
    constexpr std::string_view guard = "ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H";
    const String fullPath = findTypeMap();
    const zym::Indentation level;
    Rows rows(stream);

    // The banner row: the banner's own bytes, then the row's line end.
    zym::Generator::addCopyright(stream);
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

    TiXmlDocument document(fullPath.c_str());
    if (!loadTypeMap(document, fullPath, stream))
        return;

    String joined; // a type's namespace and name, as the package step joins them
    for (const TiXmlElement* type = document.FirstChildElement("Type"); type != nullptr;
         type = type->NextSiblingElement("Type"))
    {
        const String typeName = zym::parseAttribute<String>(type, "name");
        const String typeNamespace = zym::parseAttribute<String>(type, "namespace");
        const bool isPOD = type->Attribute("isPOD") == nullptr || zym::parseAttribute<bool>(type, "isPOD");
        joined.assign(typeNamespace).append("::").append(typeName);
        checkNamespaceDepth(type, joined);
        const QualifiedName qualifiedName{typeNamespace, typeName};
        const std::string_view podSuffix = isPOD ? "POD" : "";

        writeInNamespaces(rows, level, typeNamespace, [&](zym::Indentation inner) {
            rows(inner, "typedef zym::Vector", podSuffix, "< ", qualifiedName, " > ", typeName, "Vector;");
            rows(inner, "typedef zymData::Array< ", qualifiedName, " > ", typeName, "Array;");
            rows(inner, "typedef zymData::BufferT< ", qualifiedName, " > ", typeName, "Buffer;");
            rows(inner, "typedef zymData::ValueT< ", qualifiedName, " > ", typeName, "Value;");
        });
    }

    rows(level);
    rows(level, "#endif //", guard);
}

// ---------------------------------------------------------------------------------------------

void appendSearchPaths()
{
    zymIO::Environment& environment = zymIO::Environment::instance();
    for (const String& directory : dataDirectories())
        environment.getFilePath(zymIO::Environment::DataFilePath).pushbackPath(directory);
    environment.getFilePath(zymIO::Environment::ComponentFilePath).pushbackPath(SourceRootPath);
    environment.getFilePath(zymIO::Environment::ComponentFilePath)
        .pushbackPath(String::format("%s/Components/zym", SourceRootPath));
}

int main(int argc, char** argv)
{
    std::set_terminate(endOnUncaughtException);
    keepStandardStreamsOpen();
    // A reader that has gone, or a limit on file size, makes a write fail like any other.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // The texts come from the heap, which keeps what it is given back: the typedef header's text
    // reuses the pages of the package file's instead of mapping and faulting in new ones (a
    // tenth of the run's CPU time at 300,000 types).
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);

    if (argc <= 2)
    {
        std::cerr << "Usage: " << (argc > 0 ? argv[0] : "") << "<target file path> <typedef file path>" << std::endl;
        return -1;
    }

    appendSearchPaths();
    const String targetFilePath(argv[1]);
    const String typedefFilePath(argv[2]);
    writeContainerDeclarations(targetFilePath);
    writeContainerTypedefs(typedefFilePath);
    return 0;
}
