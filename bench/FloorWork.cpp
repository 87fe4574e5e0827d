// The contract floor: the least that any generator does whose file writer holds each text whole in
// memory before it opens the target. For each of the two files it loads the type map with TinyXML
// and reads the attributes of every top-level Type, builds a text of the tool's size in one
// reserved block (the same block for both texts), opens the target with truncation and writes the
// text in one piece.
//
//   FloorWork <type map> <package file> <package bytes> <typedef file> <typedef bytes>

#include <tinyxml.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

namespace
{

// Every attribute that the tool reads, summed by length so that no read can be left out.
std::size_t readTypes(const char* typeMapPath)
{
    TiXmlDocument document(typeMapPath);
    if (!document.LoadFile())
    {
        std::fprintf(stderr, "FloorWork: cannot load %s\n", typeMapPath);
        std::exit(2);
    }
    std::size_t seen = 0;
    for (const TiXmlElement* type = document.FirstChildElement("Type"); type != nullptr;
         type = type->NextSiblingElement("Type"))
        for (const char* attribute : {"name", "namespace", "isPOD", "include"})
            if (const char* value = type->Attribute(attribute))
                seen += std::strlen(value);
    return seen;
}

void writeText(std::string& text, const char* path, std::size_t bytes)
{
    text.assign(bytes, ' ');
    std::ofstream file(path, std::ios::out | std::ios::trunc | std::ios::binary);
    if (!file.write(text.data(), static_cast<std::streamsize>(text.size())))
    {
        std::fprintf(stderr, "FloorWork: cannot write %s\n", path);
        std::exit(2);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 6)
    {
        std::fprintf(stderr,
                     "usage: FloorWork <type map> <package file> <package bytes> <typedef file> <typedef bytes>\n");
        return 2;
    }
    const std::size_t packageBytes = std::strtoull(argv[3], nullptr, 10);
    const std::size_t typedefBytes = std::strtoull(argv[5], nullptr, 10);
    std::string text;
    text.reserve(std::max(packageBytes, typedefBytes));
    volatile std::size_t seen = readTypes(argv[1]);
    writeText(text, argv[2], packageBytes);
    seen = seen + readTypes(argv[1]);
    writeText(text, argv[4], typedefBytes);
    return 0;
}
