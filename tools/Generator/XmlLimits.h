#ifndef ZYM_GENERATOR_XMLLIMITS_H
#define ZYM_GENERATOR_XMLLIMITS_H

#include <zym/String.h>

#include <cstdint>
#include <optional>

// What the XML reader cannot take safely. It parses nested elements recursively, in time that
// grows with the square of the depth, and adds each attribute of an element in time that grows
// with their number: a deep enough file overflows its stack, and many attributes take minutes.
// Each node of its document costs up to about 400 bytes: the nodes that write nothing, all but
// the top-level Type elements and the attributes of theirs that the tool reads, are kept to a
// number that costs less than 64 MiB. Real type maps are a few KiB, one or two levels deep, with
// four attributes to an element and a few hundred nodes.
struct XmlLimits
{
    std::uint64_t maxDepth = 32;
    std::uint64_t maxAttributes = 32;
    std::uint64_t maxNodes = 100000;
    std::uint64_t maxBytes = 256u << 20;
};

// Why a file was not loaded, and the one-based row where that shows.
struct XmlFailure
{
    std::uint64_t row;
    String description;
};

// Follows the reader's own parse of `text` (as XmlText prepares it) without building anything,
// and gives the first node that goes past `limits`, with its row. The depth and attribute counts
// it follows are those of the document that the reader builds from the same text, failed or
// whole: it finds a breach of them exactly when that document goes past `limits`. Nodes are
// counted as the reader parses them, blank text that it drops included. Its time is linear in
// the text; an element's attribute names are compared with one another, which the attribute
// limit keeps to a few hundred comparisons. The size of the file is loadXmlFile's to check.
std::optional<XmlFailure> findXmlLimitBreach(const char* text, const XmlLimits& limits = XmlLimits());

#endif // ZYM_GENERATOR_XMLLIMITS_H
