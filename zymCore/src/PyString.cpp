#include <zym/PyString.h>

#include <pystring/pystring.h>

namespace pystring
{

int rfind(const String& text, const String& separator, int start, int end)
{
    return pystring::rfind(static_cast<const std::string&>(text), static_cast<const std::string&>(separator), start,
                           end);
}

} // namespace pystring
