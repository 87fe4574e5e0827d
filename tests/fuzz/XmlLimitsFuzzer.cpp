// Holds the limits check against the XML reader itself: for any text, the depth and attribute
// counts that findXmlLimitBreach follows may exceed those of the document the reader builds from
// the same text, never fall short of them. Inputs are kept small, so that the reader's own
// recursion is safe here.

#include "XmlFile.h"
#include "XmlLimits.h"

#include <tinyxml.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace
{

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

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 4096)
        return 0;
    const XmlText text(std::string_view(reinterpret_cast<const char*>(data), size));
    TiXmlDocument document;
    document.Parse(text.c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
    XmlLimits built{0, 0};
    measure(&document, 1, built);

    constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();
    if ((built.maxDepth > 0 && !findXmlLimitBreach(text.c_str(), {built.maxDepth - 1, unlimited})) ||
        (built.maxAttributes > 0 && !findXmlLimitBreach(text.c_str(), {unlimited, built.maxAttributes - 1})))
        std::abort();
    return 0;
}
