#include <zym/PyString.h>

#include <pystring/pystring.h>

namespace pystring
{

int rfind(const String& text, const String& separator, int start, int end)
{
    return pystring::rfind(static_cast<const std::string&>(text), static_cast<const std::string&>(separator), start,
                           end);
}

void split(const String& text, Vector<String>& pieces, const String& separator, int maxsplit)
{
    std::vector<std::string> result;
    pystring::split(text, result, separator, maxsplit);
    for (std::string& piece : result)
        pieces.push_back(String(std::move(piece)));
}

} // namespace pystring
