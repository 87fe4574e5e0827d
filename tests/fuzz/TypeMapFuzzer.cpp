// Holds the limits check to the XML reader itself: findXmlLimitBreach finds a breach of given
// limits exactly when the document that the reader builds from the same text, failed or whole,
// goes past them (only small texts go to the reader, where its own recursion is safe). And drives
// both generators on arbitrary type-map text: each writes a whole text, or stops where it loads the
// map, or raises; the package generator raises before it writes anything.

#include "LuaContainerGenerator.h"
#include "XmlFile.h"
#include "XmlLimits.h"

#include <zymIO/Environment.h>

#include <tinyxml.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <sstream>

namespace
{

std::string typeMapPath;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// The deepest element and the most attributes on one element below `node`.
void measure(const TiXmlNode* node, std::uint64_t depth, XmlLimits& built)
{
    for (const TiXmlElement* element = node->FirstChildElement(); element; element = element->NextSiblingElement())
    {
        std::uint64_t attributes = 0;
        for (const TiXmlAttribute* attribute = element->FirstAttribute(); attribute; attribute = attribute->Next())
            ++attributes;
        built = {std::max(built.maxDepth, depth), std::max(built.maxAttributes, attributes)};
        measure(element, depth + 1, built);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    const auto root = std::filesystem::temp_directory_path() / ("zym-fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(root);
    typeMapPath = (root / "LuaContainerPrimitives.xml").string();
    zymIO::Environment::instance().getFilePath(zymIO::Environment::DataFilePath).pushbackPath(root.string());
    std::cerr.setstate(std::ios::badbit); // the generators' reports; the fuzzer's own go through stdio
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    if (size <= 4096)
    {
        const XmlText text(bytes);
        TiXmlDocument document;
        document.Parse(text.c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
        XmlLimits built{0, 0};
        measure(&document, 1, built);
        constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();
        require(!findXmlLimitBreach(text.c_str(), built));
        require(built.maxDepth == 0 || findXmlLimitBreach(text.c_str(), {built.maxDepth - 1, unlimited}));
        require(built.maxAttributes == 0 || findXmlLimitBreach(text.c_str(), {unlimited, built.maxAttributes - 1}));
    }

    std::ofstream(typeMapPath, std::ios::binary | std::ios::trunc) << bytes;
    std::stringstream package, typedefs;
    try
    {
        writeContainerDeclarations(package);
        require(package.str().empty() || package.str().find("$ifile \"zym/Math.tolua\"\n") != std::string::npos);
    }
    catch (const std::exception&)
    {
        require(package.str().empty());
    }
    try
    {
        writeContainerTypedefs(typedefs);
        const std::string header = typedefs.str();
        const auto endsWith = [&header](const std::string& end) {
            return header.size() >= end.size() && header.compare(header.size() - end.size(), end.size(), end) == 0;
        };
        require(endsWith("\n#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H\n") ||
                endsWith("#include <zym/Uuid.h>\n\n"));
    }
    catch (const std::runtime_error&)
    {}
    return 0;
}
