#include "XmlLimits.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <regex>
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

// The number of bytes the reader takes for a character that starts with `byte`, in UTF-8.
std::size_t utf8Length(unsigned char byte)
{
    return byte >= 0xc2 && byte <= 0xdf ? 2 : byte >= 0xe0 && byte <= 0xef ? 3 : byte >= 0xf0 && byte <= 0xf4 ? 4 : 1;
}

std::string lowered(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// Whether the reader may take the file as UTF-8: it does when the file starts with a byte order
// mark, or once it has met an XML declaration that names no encoding or names UTF-8, and the
// reading of a declaration has quirks of its own. So only a file whose every "<?xml" opens a
// plain declaration that names another encoding is surely read byte by byte.
bool mayBeReadAsUtf8(const std::string& text)
{
    if (startsWith(text, 0, "\xef\xbb\xbf"))
        return true;
    static const std::regex plainDeclaration(R"(<\?xml(\s+[a-z]+\s*=\s*("[^"]*"|'[^']*'))*\s*\?)");
    static const std::regex encodingAttribute(R"(\sencoding\s*=\s*["']([^"']*)["'])");
    const auto sameLetter = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    const std::string marker = "<?xml";
    for (auto at = text.begin(); (at = std::search(at, text.end(), marker.begin(), marker.end(), sameLetter)) != text.end();
         ++at)
    {
        const auto close = std::find(at, text.end(), '>');
        if (close - at > 1024)
            return true;
        const std::string declaration = lowered(std::string(at, close));
        std::smatch encoding;
        if (!std::regex_match(declaration, plainDeclaration) ||
            !std::regex_search(declaration, encoding, encodingAttribute))
            return true;
        const std::string name = encoding[1];
        if (name.empty() || name == "utf-8" || name == "utf8")
            return true;
    }
    return false;
}

// Whether the last character of the text, as the reader sees it once line ends are "\n", is cut
// off by the end: the reader would then step past the end of its buffer.
bool endsInsideUtf8Character(const std::string& text)
{
    std::string tail = text.substr(text.size() - std::min<std::size_t>(text.size(), 16));
    for (std::size_t crlf; (crlf = tail.find("\r\n")) != std::string::npos;)
        tail.erase(crlf, 1);
    for (std::size_t i = 0; i < tail.size(); ++i)
        if (i + utf8Length(static_cast<unsigned char>(tail[i])) > tail.size())
            return true;
    return false;
}

} // namespace

std::optional<XmlLimitBreach> findXmlLimitBreach(const String& path, const XmlLimits& limits)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file.tellg();
    if (!file || size < 0)
        return std::nullopt;
    std::string text(static_cast<std::size_t>(size), '\0');
    file.seekg(0);
    file.read(text.data(), size);
    text.resize(static_cast<std::size_t>(file.gcount()));
    const std::size_t end = text.size();
    const auto breach = [&text](std::size_t offset, const std::string& description) {
        return XmlLimitBreach{rowAt(text, offset), description};
    };

    if (endsInsideUtf8Character(text) && mayBeReadAsUtf8(text))
        return breach(end, "File ends inside a UTF-8 character.");

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
