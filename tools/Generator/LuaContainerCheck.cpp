// LuaContainerCheck: whether the two files that LuaContainerGenerator wrote hold the whole texts of
// the type map and banner in the working directory. The generator does not look at a file stream
// once it is open, so a full disk or a limit on file size leaves a file cut short behind its
// success line; the build runs this behind it.
//
//   LuaContainerCheck <package file> <typedef file>
//
// Generates both texts again in memory, from the sources found in the working directory as a
// generator that searches it finds them, and compares each file with its text. Prints one line for
// each file that differs and exits with status 1; exits with 0 when both are whole.

#include "Common.h"
#include "LuaContainerGenerator.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>

// The generator's functions search the working directory.
extern const char SourceRootPath[] = ".";

namespace
{

bool isWhole(const char* path, void (*generate)(std::ostream&))
{
    std::stringstream text;
    generate(text);
    std::ifstream file(path, std::ios::in | std::ios::binary);
    if (!zym::Generator::streamdiff(file, text))
        return true;

    file.clear();
    std::ostringstream written;
    written << file.seekg(0).rdbuf();
    const std::string expected = std::move(text).str(), found = std::move(written).str();
    std::cerr << path << ": error: ";
    if (found.size() < expected.size() && expected.compare(0, found.size(), found) == 0)
        std::cerr << "written short, " << found.size() << " of " << expected.size()
                  << " bytes (no space left on the device, or a limit on file size?)" << std::endl;
    else
        std::cerr << "not the text of the type map in the working directory (does the generator search another?)"
                  << std::endl;
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::cerr << "Usage: " << (argc > 0 ? argv[0] : "") << " <package file> <typedef file>" << std::endl;
        return 2;
    }
    appendSearchPaths();
    try
    {
        const bool packageWhole = isWhole(argv[1], writeContainerDeclarations);
        const bool typedefsWhole = isWhole(argv[2], writeContainerTypedefs);
        return packageWhole && typedefsWhole ? 0 : 1;
    }
    catch (const std::exception& error)
    {
        std::cerr << "LuaContainerCheck: " << error.what() << std::endl;
        return 1;
    }
}
