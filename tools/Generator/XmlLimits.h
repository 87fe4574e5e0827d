#ifndef ZYM_GENERATOR_XMLLIMITS_H
#define ZYM_GENERATOR_XMLLIMITS_H

#include <zym/String.h>

#include <cstdint>
#include <optional>

// What the XML reader cannot take safely. It parses nested elements recursively, in time that
// grows with the square of the depth, and adds each attribute of an element in time that grows
// with their number: a deep enough file overflows its stack, and many attributes take minutes.
// Real type maps are one or two levels deep, with four attributes to an element.
struct XmlLimits
{
    std::uint64_t maxDepth = 32;
    std::uint64_t maxAttributes = 32;
};

// Why a file was not loaded, and the one-based row where that shows.
struct XmlFailure
{
    std::uint64_t row;
    String description;
};

// Follows the reader's own parse of `text` (as XmlText prepares it) without building anything,
// and gives the first element that goes past `limits`, with the row of its tag. The depth and
// attribute counts it follows are those of the document that the reader builds from the same
// text, failed or whole: it finds a breach exactly when that document goes past `limits`. Its
// time is linear in the text; an element's attribute names are compared with one another, which
// the attribute limit keeps to a few hundred comparisons.
std::optional<XmlFailure> findXmlLimitBreach(const char* text, const XmlLimits& limits = XmlLimits());

#endif // ZYM_GENERATOR_XMLLIMITS_H
