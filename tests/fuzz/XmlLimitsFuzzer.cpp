// Holds the limits check against the XML reader itself: for any text, the depth and attribute
// counts that findXmlLimitBreach follows may exceed those of the document the reader builds from
// the same text, never fall short of them. Inputs are kept small, so that the reader's own
// recursion is safe here.

#include "XmlFile.h"
#include "XmlLimits.h"

#include <tinyxml.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace
{

struct Shape
{
    std::uint64_t depth = 0;
    std::uint64_t attributes = 0;
};

void measure(const TiXmlNode* node, std::uint64_t depth, Shape& shape)
{
    for (const TiXmlElement* element = node->FirstChildElement(); element != nullptr;
         element = element->NextSiblingElement())
    {
        shape.depth = std::max(shape.depth, depth);
        std::uint64_t attributes = 0;
        for (const TiXmlAttribute* attribute = element->FirstAttribute(); attribute != nullptr; attribute = attribute->Next())
            ++attributes;
        shape.attributes = std::max(shape.attributes, attributes);
        measure(element, depth + 1, shape);
    }
}

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 4096)
        return 0;
    const XmlText text(std::string_view(reinterpret_cast<const char*>(data), size));
    TiXmlDocument document;
    document.Parse(text.c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
    Shape built;
    measure(&document, 1, built);

    constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();
    if (built.depth > 0)
        require(findXmlLimitBreach(text.c_str(), XmlLimits{built.depth - 1, unlimited}).has_value());
    if (built.attributes > 0)
        require(findXmlLimitBreach(text.c_str(), XmlLimits{unlimited, built.attributes - 1}).has_value());
    return 0;
}
