// The least work any generator of these two files has to do, for the benchmark to hold the tool
// against: load the type map twice and read the attributes of its Type elements, and write as many
// bytes to two files as the tool wrote.
//
//   FloorWork <type map> <package file> <package bytes> <typedef file> <typedef bytes>

#include <tinyxml.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

namespace
{

// Every attribute the tool reads, summed by length so that no read can be left out.
std::size_t walkTypes(const char* typeMapPath)
{
    TiXmlDocument document(typeMapPath);
    if (!document.LoadFile(TIXML_ENCODING_UNKNOWN))
    {
        std::fprintf(stderr, "FloorWork: cannot load %s\n", typeMapPath);
        std::exit(2);
    }
    std::size_t seen = 0;
    for (const TiXmlElement* type = document.FirstChildElement("Type"); type != nullptr;
         type = type->NextSiblingElement("Type"))
    {
        for (const char* attribute : {"name", "namespace", "isPOD", "include"})
            if (const char* value = type->Attribute(attribute))
                seen += std::strlen(value);
    }
    return seen;
}

void writeBytes(const char* path, unsigned long long count)
{
    static const std::vector<char> block(1 << 20, ' ');
    std::ofstream file(path, std::ios::out | std::ios::trunc | std::ios::binary);
    while (count > 0)
    {
        const unsigned long long piece = count < block.size() ? count : block.size();
        file.write(block.data(), static_cast<std::streamsize>(piece));
        count -= piece;
    }
    if (!file)
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
        std::fprintf(stderr, "usage: FloorWork <type map> <package file> <package bytes> <typedef file> <typedef bytes>\n");
        return 2;
    }
    volatile std::size_t sink = walkTypes(argv[1]);
    writeBytes(argv[2], std::strtoull(argv[3], nullptr, 10));
    sink = sink + walkTypes(argv[1]);
    writeBytes(argv[4], std::strtoull(argv[5], nullptr, 10));
    return 0;
}
