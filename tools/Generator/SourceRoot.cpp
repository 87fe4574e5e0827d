#include "LuaContainerGenerator.h"

// ZYM_SOURCE_ROOT comes from the build: each build of the tool searches its own source tree.
extern const char SourceRootPath[] = ZYM_SOURCE_ROOT;
