#ifndef ZYM_GENERATOR_COMMON_H
#define ZYM_GENERATOR_COMMON_H

#include <zym/String.h>

#include <istream>
#include <ostream>

namespace zym
{
namespace Generator
{

// The name under which the banner file is looked up in the data search list.
inline constexpr char copyrightFileName[] = "tools/Generator/zym_copyright.txt";

// Copies the banner file to `stream` up to its first NUL byte, and reads no further. Writes
// nothing when there is no such file.
void addCopyright(std::ostream& stream);

// True when the two streams differ in length or in content, compared from their starts.
bool streamdiff(std::istream& first, std::istream& second);

// A copy of `text` with its first character in upper case, or in lower case.
String capitalize(const String& text);
String decapitalize(const String& text);

} // namespace Generator
} // namespace zym

#endif // ZYM_GENERATOR_COMMON_H
