#include "XmlLimits.h"

#include <tinyxml.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

namespace
{

// The reader's own rules for white space, names and markers, which its base class keeps to itself.
class ReaderRules : TiXmlBase
{
public:
    using TiXmlBase::IsAlpha;
    using TiXmlBase::ReadName;
    using TiXmlBase::SkipWhiteSpace;
    using TiXmlBase::StringEqual;
};

// The node that the reader makes for the markup at `p` (TiXmlNode::Identify).
enum class Node
{
    None,
    Declaration,
    Comment,
    CData,
    Unknown,
    Element,
};

Node identify(const char* p, TiXmlEncoding encoding)
{
    p = ReaderRules::SkipWhiteSpace(p, encoding);
    if (p == nullptr || *p != '<')
        return Node::None;
    if (ReaderRules::StringEqual(p, "<?xml", true, encoding))
        return Node::Declaration;
    if (ReaderRules::StringEqual(p, "<!--", false, encoding))
        return Node::Comment;
    if (ReaderRules::StringEqual(p, "<![CDATA[", false, encoding))
        return Node::CData;
    if (ReaderRules::StringEqual(p, "<!", false, encoding))
        return Node::Unknown;
    if (ReaderRules::IsAlpha(static_cast<unsigned char>(p[1]), encoding) || p[1] == '_')
        return Node::Element;
    return Node::Unknown;
}

// The encoding that the reader takes from the first declaration of a document.
TiXmlEncoding declaredEncoding(const char* name)
{
    if (*name == '\0' || ReaderRules::StringEqual(name, "UTF-8", true, TIXML_ENCODING_UNKNOWN) ||
        ReaderRules::StringEqual(name, "UTF8", true, TIXML_ENCODING_UNKNOWN))
        return TIXML_ENCODING_UTF8;
    return TIXML_ENCODING_LEGACY;
}

// A walk of the reader's parse. Markup that holds no element goes through the reader's own parser
// of its kind, on a node made for the purpose, so that it ends exactly where the reader's does;
// only elements, the one kind that nests, are followed here, as TiXmlElement parses them.
class Scan
{
public:
    Scan(const char* start, const XmlLimits& bounds) : text(start), limits(bounds) {}

    // TiXmlDocument::Parse.
    std::optional<XmlFailure> run()
    {
        const char* p = text;
        if (*p == '\0')
            return std::nullopt;
        if (std::equal(p, p + 3, "\xef\xbb\xbf"))
            encoding = TIXML_ENCODING_UTF8;
        for (p = ReaderRules::SkipWhiteSpace(p, encoding); p != nullptr && *p != '\0' && !breach;
             p = ReaderRules::SkipWhiteSpace(p, encoding))
        {
            const Node node = identify(p, encoding);
            if (node == Node::Declaration && encoding == TIXML_ENCODING_UNKNOWN)
            {
                TiXmlDeclaration declaration;
                p = declaration.Parse(p, nullptr, encoding);
                encoding = declaredEncoding(declaration.Encoding());
            }
            else
                p = parse(node, p, 1);
        }
        return breach;
    }

private:
    // Where the reader's parse of the node at `p`, at `depth` below the document, ends; null
    // where it fails, or where text stands at the top, at which the reader stops.
    const char* parse(Node node, const char* p, std::uint64_t depth)
    {
        switch (node)
        {
        case Node::Declaration:
            return TiXmlDeclaration().Parse(p, nullptr, encoding);
        case Node::Comment:
            return TiXmlComment().Parse(p, nullptr, encoding);
        case Node::CData:
        {
            TiXmlText cdata("");
            cdata.SetCDATA(true);
            return cdata.Parse(p, nullptr, encoding);
        }
        case Node::Unknown:
            return TiXmlUnknown().Parse(p, nullptr, encoding);
        case Node::Element:
            return parseElement(p, depth);
        case Node::None:
            break;
        }
        return nullptr;
    }

    // The reader's name characters: bytes above 126 count as letters.
    static bool letter(char c) { return static_cast<unsigned char>(c) > 126 || std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
    static bool nameCharacter(char c) { return letter(c) || std::isdigit(static_cast<unsigned char>(c)) || c == '-' || c == '.' || c == ':'; }

    // TiXmlElement::Parse, from the "<" of the tag. The reader refuses a repeated attribute name.
    const char* parseElement(const char* tag, std::uint64_t depth)
    {
        if (depth > limits.maxDepth)
            return fail(tag, "Elements nested deeper than " + std::to_string(limits.maxDepth) + " levels.");

        std::string name;
        const char* p = ReaderRules::ReadName(ReaderRules::SkipWhiteSpace(tag + 1, encoding), &name, encoding);
        names.clear();
        while (p != nullptr && *p != '\0')
        {
            p = ReaderRules::SkipWhiteSpace(p, encoding);
            if (p == nullptr || *p == '\0')
                return nullptr;
            if (*p == '/')
                return p[1] == '>' ? p + 2 : nullptr;
            if (*p == '>')
                return parseEndTag(parseContent(p + 1, depth), "</" + name);

            const char* nameEnd = p;
            while (nameCharacter(*nameEnd))
                ++nameEnd;
            const std::string_view attributeName(p, static_cast<std::size_t>(nameEnd - p));
            p = parseAttribute(p, attributeName.size());
            if (p == nullptr || *p == '\0' || std::find(names.begin(), names.end(), attributeName) != names.end())
                return nullptr;
            names.push_back(attributeName);
            if (names.size() > limits.maxAttributes)
                return fail(tag, "More than " + std::to_string(limits.maxAttributes) + " attributes on one element.");
        }
        return nullptr;
    }

    // TiXmlAttribute::Parse. A name, an "=" and a value in quotes that holds no entity, nor, where
    // the text is read as UTF-8, a byte of a character of several bytes, end behind the closing
    // quote, as the reader would find them; anything else goes to the reader's own parser.
    const char* parseAttribute(const char* attribute, std::size_t nameLength) const
    {
        if (!letter(*attribute))
            return TiXmlAttribute().Parse(attribute, nullptr, encoding);
        const char* p = ReaderRules::SkipWhiteSpace(attribute + nameLength, encoding);
        if (p == nullptr || *p != '=' || (p = ReaderRules::SkipWhiteSpace(p + 1, encoding)) == nullptr ||
            (*p != '"' && *p != '\''))
            return TiXmlAttribute().Parse(attribute, nullptr, encoding);
        const char quote = *p;
        for (++p; *p != quote; ++p)
            if (*p == '\0' || *p == '&' || (encoding == TIXML_ENCODING_UTF8 && static_cast<unsigned char>(*p) >= 0x80))
                return TiXmlAttribute().Parse(attribute, nullptr, encoding);
        return p[1] != '\0' ? p + 1 : nullptr;
    }

    // TiXmlElement::ReadValue: text and nodes up to the first "</".
    const char* parseContent(const char* p, std::uint64_t depth)
    {
        const char* withWhiteSpace = p;
        for (p = ReaderRules::SkipWhiteSpace(p, encoding); p != nullptr && *p != '\0';
             p = ReaderRules::SkipWhiteSpace(p, encoding))
        {
            if (*p != '<')
                p = TiXmlText("").Parse(TiXmlBase::IsWhiteSpaceCondensed() ? p : withWhiteSpace, nullptr, encoding);
            else if (ReaderRules::StringEqual(p, "</", false, encoding))
                return p;
            else
                p = parse(identify(p, encoding), p, depth + 1);
            withWhiteSpace = p;
        }
        return p;
    }

    const char* parseEndTag(const char* p, const std::string& endTag) const
    {
        if (p == nullptr || *p == '\0' || !ReaderRules::StringEqual(p, endTag.c_str(), false, encoding))
            return nullptr;
        p = ReaderRules::SkipWhiteSpace(p + endTag.size(), encoding);
        return p != nullptr && *p == '>' ? p + 1 : nullptr;
    }

    // Rows as the reader counts them in a text whose line ends are all "\n".
    const char* fail(const char* tag, const std::string& description)
    {
        breach = XmlFailure{1 + static_cast<std::uint64_t>(std::count(text, tag, '\n')), description};
        return nullptr;
    }

    const char* const text;
    const XmlLimits limits;
    TiXmlEncoding encoding = TIXML_ENCODING_UNKNOWN;
    std::optional<XmlFailure> breach;
    std::vector<std::string_view> names;  // of the attributes of the element being read
};

} // namespace

std::optional<XmlFailure> findXmlLimitBreach(const char* text, const XmlLimits& limits)
{
    return Scan(text, limits).run();
}
