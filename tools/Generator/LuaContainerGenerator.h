#ifndef ZYM_LUACONTAINERGENERATOR_H
#define ZYM_LUACONTAINERGENERATOR_H

#include <zym/Indentation.h>
#include <zym/String.h>

#include <ostream>

// The root of the search lists, fixed when the tool is built.
extern const char SourceRootPath[];

// The name under which the type map is looked up in the data search list.
extern const char* TypeMapPath;

// Appends the search paths under SourceRootPath to the core library's environment: the root and
// its data/ to the data list, the root and its Components/zym to the component list.
void appendSearchPaths();

// The package file: a file, its whole text, and the scopes and classes of one element type.
void writeContainerDeclarations(const String& path);
void writeContainerDeclarations(std::ostream& stream);
void writeContainerDeclarations(std::ostream& stream, zym::Indentation level, const String& qualifiedName);

// The class declarations of the package file, for one element type.
void writeVectorDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                            const String& typeNamespace);
void writeArrayDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                           const String& typeNamespace);
void writeBufferDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                            const String& typeNamespace);
void writeValueDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                           const String& typeNamespace);
void writeHashSetDeclaration(std::ostream& stream, zym::Indentation level, const String& typeName,
                             const String& typeNamespace);

// The typedef header: a file and its whole text.
void writeContainerTypedefs(const String& path);
void writeContainerTypedefs(std::ostream& stream);

#endif // ZYM_LUACONTAINERGENERATOR_H
