#ifndef ZYM_GENERATOR_XMLFILE_H
#define ZYM_GENERATOR_XMLFILE_H

#include "XmlLimits.h"

#include <tinyxml.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

// The text of an XML file as the reader's LoadFile prepares it for its parser: each line end,
// "\r\n" or a lone "\r", made "\n", and the text cut at its first NUL byte. Zero bytes follow the
// text to the end of the block: reading a file as UTF-8, the reader steps over a whole character
// of up to four bytes without looking for the end, and looks two bytes ahead for a byte order
// mark, so each such step lands on a zero byte inside the block, wherever the text ends.
class XmlText
{
public:
    static constexpr std::size_t padding = 8;

    explicit XmlText(std::string_view bytes);

    // The text of the first `size` bytes read from `descriptor`; nothing when fewer can be read.
    static std::optional<XmlText> read(int descriptor, std::size_t size);

    const char* c_str() const { return block.get(); }

private:
    explicit XmlText(std::size_t length);
    void normalize(std::size_t length);

    std::unique_ptr<char[]> block;
};

// Loads `document` from the file that it is named after, as TiXmlDocument::LoadFile does, with the
// same failures, rows and descriptions, but from an XmlText, and only once the file and its text
// stay within `limits`; a file that is too large is not read at all. Gives the failure, the
// reader's own or a breach of the limits, or nothing when loaded.
std::optional<XmlFailure> loadXmlFile(TiXmlDocument& document, const XmlLimits& limits = XmlLimits());

#endif // ZYM_GENERATOR_XMLFILE_H
