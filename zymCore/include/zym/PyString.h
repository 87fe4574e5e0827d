#ifndef ZYM_PYSTRING_H
#define ZYM_PYSTRING_H

#include <zym/String.h>

namespace pystring
{

// Index of the last `separator` in text[start, end), negative when there is none.
int rfind(const String& text, const String& separator, int start, int end);

} // namespace pystring

#endif // ZYM_PYSTRING_H
