#ifndef ZYM_STAND_IN_STRING_H
#define ZYM_STAND_IN_STRING_H

// zym/String.h as the bindings see it.
//
// The type map names the string element type zym::String. The project's own
// include/zym/String.h, the core string the tool is written with, defines that class as
// zym::ZyMString<std::string> and names it ::String only. The bindings need the one class
// under both names, so this directory stands ahead of the project's include directory on
// their include path: this header replaces zym/String.h for every file that includes it
// (the package file's include row and zym/HashSet.h alike), includes the project's header by
// its place in the tree, and adds the name in the namespace. There is no second string class.
#include "../../../../include/zym/String.h"

namespace zym
{

typedef ::String String;

} // namespace zym

#endif // ZYM_STAND_IN_STRING_H
