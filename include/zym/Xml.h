#ifndef ZYM_XML_H
#define ZYM_XML_H

#include <zym/Core.h>
#include <zym/ReportedError.h>
#include <zym/String.h>

#include <tinyxml.h>

#include <cstdio>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace zym_internal
{

// Hands an exception to the core library's error log on its way out.
class ExceptionDescriber
{
public:
    explicit ExceptionDescriber(std::string text) : description(std::move(text)) {}

    template <typename T>
    const T& operator%(const T& error) const
    {
        zym::log_throw(description, error.what());
        return error;
    }

    std::string description;
};

// Reports a bad attribute of `element` on std::cerr and raises the same report, with the source
// position of the statement that raised it.
[[noreturn]] inline void throwAttributeError(const TiXmlElement* element, const char* problemTemplate,
                                             const char* attributeName, const char* sourcePath, unsigned sourceLine,
                                             const char* signature)
{
    char problemText[8192];
    std::snprintf(problemText, sizeof problemText, problemTemplate, attributeName);

    static const char* const rule = "==============================================================================";
    std::stringstream report;
    report << "[" << sourcePath << ":" << sourceLine << "] XML error: " << problemText << ". Error at row "
           << element->Row() << "\n"
           << "File: " << element->GetDocument()->Value() << "\n"
           << rule << "\n"
           << *element << "\n"
           << rule << "\n";
    const std::runtime_error error(report.str());
    const ExceptionDescriber describer(zym::buildErrorString("[%s:%u (%s)]", "", sourcePath, sourceLine, signature));
    zym::raiseReported(
        error, [&describer](const std::runtime_error& raised) -> const auto& { return describer % raised; });
}

} // namespace zym_internal

// The position is that of the statement that names the macro.
#define ZYM_RAISE_ATTRIBUTE_ERROR(element, problemTemplate, attributeName)                                             \
    zym_internal::throwAttributeError(element, problemTemplate, attributeName, __FILE__,                               \
                                      static_cast<unsigned>(__LINE__), __PRETTY_FUNCTION__)

namespace zym
{

// The value of one attribute of `element`; a missing or malformed attribute is reported and raised.
template <typename T>
T parseAttribute(const TiXmlElement* element, const char* attributeName);

template <>
inline String parseAttribute<String>(const TiXmlElement* element, const char* attributeName)
{
    const char* text = element->Attribute(attributeName);
    if (text == nullptr)
        ZYM_RAISE_ATTRIBUTE_ERROR(element, "Could not locate attribute '%s'", attributeName);
    return String(text);
}

// Reads "true" or "false", lower case, after optional white space; what follows the word is not looked at.
template <>
inline bool parseAttribute<bool>(const TiXmlElement* element, const char* attributeName)
{
    const char* text = element->Attribute(attributeName);
    if (text == nullptr)
        ZYM_RAISE_ATTRIBUTE_ERROR(element, "Could not locate attribute '%s'", attributeName);
    thread_local std::istringstream stream; // kept from call to call: making a stream costs more than a read
    stream.clear();
    stream.str(text);
    bool value = false;
    stream >> std::boolalpha >> value;
    if (stream.fail())
        ZYM_RAISE_ATTRIBUTE_ERROR(element, "Unable to parse attribute %s", attributeName);
    return value;
}

} // namespace zym

#endif // ZYM_XML_H
