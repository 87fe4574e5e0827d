// The limits check walks a text the way the XML reader parses it, without building anything, so
// that the depth and the attribute counts it sees are those of the document the reader would
// build from the same text. These are the reader's rules that it follows:
//
//   - The document: an empty text is no document. A UTF-8 byte order mark makes the text UTF-8;
//     otherwise the first declaration decides ("UTF-8", "UTF8" or none: UTF-8; any other name:
//     legacy), and until then the encoding is unknown. Nodes follow one another at the top level
//     until the text ends, a node fails, or text stands at the top, where the reader stops.
//   - A node is told by its first characters after white space: "<?xml" (in any case) a
//     declaration, "<!--" a comment, "<![CDATA[" character data, "<!" something unknown, "<" and a
//     letter or "_" an element, any other "<" something unknown.
//   - An element is "<", a name, its attributes, and either "/>" or ">", its content and the end
//     tag "</" + the same name, in the same case, and ">" after white space. A name that an element
//     repeats among its attributes ends the parse.
//   - An attribute is a name, "=", and a value in single or double quotes. Entities ("&...;") and,
//     in UTF-8, characters of several bytes may run past the closing quote.
//   - The content of an element is text and nodes up to the first "</".
//   - Rows are counted in a text whose line ends are all "\n", one-based.
//
// Every node that the reader parses counts against the node budget, but for the top-level Type
// elements and the attributes of theirs that the tool reads, which write more to the outputs than
// they cost, and the one declaration read before the encoding is known.
//
// Markup that holds no element (declarations, comments, character data, unknown markup, text)
// goes through the reader's own parser of its kind, on a node made for the purpose, so that it
// ends exactly where the reader's parse ends. Only elements, the one kind that nests, are followed
// here, and of their attributes only the plain ones: a value with an entity or a byte of a
// character of several bytes goes to the reader's attribute parser too.

#include "XmlLimits.h"

#include <tinyxml.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace
{

// The reader's rules for white space, names and markers, which its base class keeps to itself.
class ReaderRules : TiXmlBase
{
public:
    using TiXmlBase::IsAlpha;
    using TiXmlBase::ReadName;
    using TiXmlBase::SkipWhiteSpace;
    using TiXmlBase::StringEqual;
};

// The kinds of node that the reader makes (TiXmlNode::Identify).
enum class Node { None, Declaration, Comment, CData, Unknown, Element };

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

// The encoding that the first declaration of a document gives it.
TiXmlEncoding declaredEncoding(const char* name)
{
    if (*name == '\0' || ReaderRules::StringEqual(name, "UTF-8", true, TIXML_ENCODING_UNKNOWN) ||
        ReaderRules::StringEqual(name, "UTF8", true, TIXML_ENCODING_UNKNOWN))
        return TIXML_ENCODING_UTF8;
    return TIXML_ENCODING_LEGACY;
}

// The reader's name characters: bytes above 126 count as letters, and below them the letters of
// the "C" locale, which the tool never leaves.
bool isNameStart(char c)
{
    return static_cast<unsigned char>(c) > 126 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// The attributes of a Type that the tool reads.
bool isReadAttribute(std::string_view name)
{
    return name == "name" || name == "namespace" || name == "isPOD" || name == "include";
}

bool isNameCharacter(char c)
{
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
}

// Each parse below takes the text at the start of its construct and gives where the reader's parse
// of it ends: the character behind it, or null where the reader fails or stops.
class Scan
{
public:
    Scan(const char* start, const XmlLimits& bounds) : text(start), limits(bounds) {}

    std::optional<XmlFailure> parseDocument()
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
                p = parseNode(node, p, 1);
        }
        return breach;
    }

private:
    // A node at `depth` below the document; text at the top (Node::None) stops the reader.
    const char* parseNode(Node node, const char* p, std::uint64_t depth)
    {
        if (node == Node::Element)
            return parseElement(p, depth);
        if (node == Node::None || !countNode(p))
            return nullptr;
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
        default:
            return TiXmlUnknown().Parse(p, nullptr, encoding);
        }
    }

    // TiXmlElement::Parse, from the "<" of the tag.
    const char* parseElement(const char* tag, std::uint64_t depth)
    {
        if (depth > limits.maxDepth)
            return fail(tag, "Elements nested deeper than " + std::to_string(limits.maxDepth) + " levels.");

        std::string name;
        const char* p = ReaderRules::ReadName(ReaderRules::SkipWhiteSpace(tag + 1, encoding), &name, encoding);
        const bool counts = depth > 1 || name != "Type";
        if (counts && !countNode(tag))
            return nullptr;
        // The names of this element's attributes. Its content, where the children reuse the list,
        // comes only after the last of them.
        attributeNames.clear();
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
            while (isNameCharacter(*nameEnd))
                ++nameEnd;
            const std::string_view attributeName(p, static_cast<std::size_t>(nameEnd - p));
            p = parseAttribute(p, attributeName.size());
            if (p == nullptr || *p == '\0' ||
                std::find(attributeNames.begin(), attributeNames.end(), attributeName) != attributeNames.end())
                return nullptr;
            if ((counts || !isReadAttribute(attributeName)) && !countNode(nameEnd))
                return nullptr;
            attributeNames.push_back(attributeName);
            if (attributeNames.size() > limits.maxAttributes)
                return fail(tag, "More than " + std::to_string(limits.maxAttributes) + " attributes on one element.");
        }
        return nullptr;
    }

    // TiXmlAttribute::Parse: a plain attribute ends behind its closing quote, where the reader's
    // parse of it ends; any other goes to the reader's own parser.
    const char* parseAttribute(const char* attribute, std::size_t nameLength) const
    {
        if (!isNameStart(*attribute))
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

    // TiXmlElement::ReadValue: text and nodes up to the first "</", which it gives.
    const char* parseContent(const char* p, std::uint64_t depth)
    {
        const char* withWhiteSpace = p;
        for (p = ReaderRules::SkipWhiteSpace(p, encoding); p != nullptr && *p != '\0';
             p = ReaderRules::SkipWhiteSpace(p, encoding))
        {
            if (*p != '<')
                p = countNode(p) ? TiXmlText("").Parse(TiXmlBase::IsWhiteSpaceCondensed() ? p : withWhiteSpace, nullptr,
                                                       encoding)
                                 : nullptr;
            else if (ReaderRules::StringEqual(p, "</", false, encoding))
                return p;
            else
                p = parseNode(identify(p, encoding), p, depth + 1);
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

    bool countNode(const char* at)
    {
        if (++nodes <= limits.maxNodes)
            return true;
        fail(at, "More than " + std::to_string(limits.maxNodes) + " nodes besides the Type elements.");
        return false;
    }

    // Records the breach at the row of `tag`, and stops the walk.
    const char* fail(const char* tag, const std::string& description)
    {
        breach = XmlFailure{1 + static_cast<std::uint64_t>(std::count(text, tag, '\n')), description};
        return nullptr;
    }

    const char* const text;
    const XmlLimits limits;
    TiXmlEncoding encoding = TIXML_ENCODING_UNKNOWN;
    std::optional<XmlFailure> breach;
    std::uint64_t nodes = 0;
    std::vector<std::string_view> attributeNames; // views into `text`
};

} // namespace

std::optional<XmlFailure> findXmlLimitBreach(const char* text, const XmlLimits& limits)
{
    return Scan(text, limits).parseDocument();
}
