#ifndef ZYM_GENERATOR_XMLLIMITS_H
#define ZYM_GENERATOR_XMLLIMITS_H

#include <zym/String.h>

#include <cstdint>
#include <optional>

// What the XML reader cannot take safely. It parses nested elements recursively, in time that
// grows with the square of the depth, and adds each attribute of an element in time that grows
// with their number; and when it reads a file as UTF-8, a character cut off by the end of the
// file makes it read past its buffer. A file that goes past these bounds is refused before the
// reader sees it. Real type maps are flat, short-tagged and end in a newline.
struct XmlLimits
{
    std::uint64_t maxDepth = 256;
    std::uint64_t maxAttributes = 256;
};

struct XmlLimitBreach
{
    std::uint64_t row;  // one-based row of the tag that went past a limit
    String description;
};

// Scans the file at `path` once, in linear time. Gives the first breach of `limits`, or nothing
// when there is none or the file cannot be read (the reader then reports that in its own words).
std::optional<XmlLimitBreach> findXmlLimitBreach(const String& path, const XmlLimits& limits = XmlLimits());

#endif // ZYM_GENERATOR_XMLLIMITS_H
