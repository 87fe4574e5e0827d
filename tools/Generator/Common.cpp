#include "Common.h"

#include <zymIO/Environment.h>

#include <algorithm>
#include <cctype>
#include <fstream>

namespace zym
{
namespace Generator
{

void addCopyright(std::ostream& stream)
{
    const String path =
        zymIO::Environment::instance().getFilePath(zymIO::Environment::DataFilePath).find(String(copyrightFileName));
    std::ifstream file(path, std::ios::in | std::ios::binary);
    char block[4096];
    while (file.read(block, sizeof block) || file.gcount() > 0)
    {
        const char* const end = block + file.gcount();
        const char* const nul = std::find(static_cast<const char*>(block), end, '\0');
        stream.write(block, nul - block);
        if (nul != end)
            return;
    }
}

bool streamdiff(std::istream& first, std::istream& second)
{
    const std::streamoff firstStart = first.tellg();
    const std::streamoff secondStart = second.tellg();

    first.seekg(0, std::ios::end);
    second.seekg(0, std::ios::end);
    if (first.tellg() != second.tellg())
    {
        first.seekg(firstStart, std::ios::beg);
        second.seekg(secondStart, std::ios::beg);
        return true;
    }

    first.seekg(0, std::ios::beg);
    second.seekg(0, std::ios::beg);
    std::ios::iostate firstState = first.rdstate();
    std::ios::iostate secondState = second.rdstate();
    while (firstState == std::ios::goodbit && secondState == std::ios::goodbit)
    {
        const int firstCharacter = first.get();
        const int secondCharacter = second.get();
        firstState = first.rdstate();
        if (firstState != std::ios::goodbit)
        {
            secondState = second.rdstate();
            break;
        }
        secondState = second.rdstate();
        if (secondState != std::ios::goodbit || firstCharacter != secondCharacter)
            break;
    }

    first.seekg(firstStart, std::ios::beg);
    second.seekg(secondStart, std::ios::beg);
    return !((firstState & std::ios::eofbit) && (secondState & std::ios::eofbit));
}

namespace
{

// The first character goes to the case function as a plain char widened to int, sign and all.
String withFirstCharacterChanged(const String& text, int (*changeCase)(int))
{
    String result(text);
    if (result.empty())
        return result;
    result[0] = static_cast<char>(changeCase(static_cast<int>(result[0])));
    return result;
}

} // namespace

String capitalize(const String& text) { return withFirstCharacterChanged(text, std::toupper); }

String decapitalize(const String& text) { return withFirstCharacterChanged(text, std::tolower); }

} // namespace Generator
} // namespace zym
