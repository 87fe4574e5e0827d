#include "XmlLimits.h"

#include <cctype>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

namespace
{

// Rows as the XML reader counts them: a line feed, or a carriage return not followed by one.
std::uint64_t rowAt(const std::string& text, std::size_t offset)
{
    std::uint64_t row = 1;
    for (std::size_t i = 0; i < offset; ++i)
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n')))
            ++row;
    return row;
}

bool startsWith(const std::string& text, std::size_t offset, const char* prefix)
{
    return text.compare(offset, std::strlen(prefix), prefix) == 0;
}

// The reader's test for the start of an element name; bytes above 126 count as letters.
bool startsElementName(unsigned char byte)
{
    return byte > 126 || std::isalpha(byte) || byte == '_';
}

} // namespace

std::optional<XmlLimitBreach> findXmlLimitBreach(const String& path, const XmlLimits& limits)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const std::size_t end = text.size();
    const auto breach = [&text](std::size_t offset, const std::string& description) {
        return XmlLimitBreach{rowAt(text, offset), description};
    };

    std::uint64_t depth = 0;
    for (std::size_t i = text.find('<'); i < end; i = text.find('<', i))
    {
        // Markup that holds no elements ends at its own terminator; one that never ends is the reader's to report.
        const char* terminator = startsWith(text, i, "<!--")        ? "-->"
                                 : startsWith(text, i, "<![CDATA[") ? "]]>"
                                 : startsWith(text, i, "<!") || startsWith(text, i, "<?") || startsWith(text, i, "</") ? ">"
                                                                                                                       : nullptr;
        if (terminator != nullptr)
        {
            if (startsWith(text, i, "</") && depth > 0)
                --depth;
            const std::size_t close = text.find(terminator, i + 2);
            if (close == std::string::npos)
                return std::nullopt;
            i = close + std::strlen(terminator);
            continue;
        }
        if (i + 1 >= end || !startsElementName(static_cast<unsigned char>(text[i + 1])))
        {
            ++i;
            continue;
        }

        if (++depth > limits.maxDepth)
            return breach(i, "Elements nested deeper than " + std::to_string(limits.maxDepth) + " levels.");
        std::uint64_t attributes = 0;
        std::size_t j = i + 1;
        for (; j < end && text[j] != '>'; ++j)
        {
            if (text[j] == '"' || text[j] == '\'')
            {
                j = text.find(text[j], j + 1);
                if (j == std::string::npos)
                    return std::nullopt;
            }
            else if (text[j] == '=' && ++attributes > limits.maxAttributes)
                return breach(i, "More than " + std::to_string(limits.maxAttributes) + " attributes on one element.");
        }
        if (j >= end)
            return std::nullopt;
        if (text[j - 1] == '/')
            --depth;
        i = j + 1;
    }
    return std::nullopt;
}
