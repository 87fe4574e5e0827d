#ifndef ZYM_PYSTRING_H
#define ZYM_PYSTRING_H

#include <zym/String.h>
#include <zym/Vector.h>

namespace pystring
{

// Index of the last `separator` in text[start, end), negative when there is none.
int rfind(const String& text, const String& separator, int start, int end);

// Appends the pieces of `text` between the separators to `pieces`, in order; at most
// `maxsplit` cuts, or no limit when it is negative. The empty text gives one empty piece.
void split(const String& text, Vector<String>& pieces, const String& separator, int maxsplit);

} // namespace pystring

#endif // ZYM_PYSTRING_H
