// Drives both generators in process on arbitrary type-map text, and the include set on
// arbitrary keys (the lines of the same input), checking what must hold for any input.

#include "LuaContainerGenerator.h"

#include <zym/HashSet.h>
#include <zymIO/Environment.h>

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

std::string typeMapPath;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// The set against std::set. It may refuse a key only when its probe positions are all held,
// which takes at least eleven other keys.
void checkIncludeSet(const std::string& text)
{
    HashSet<String> set;
    std::set<std::string> expected;
    std::istringstream lines(text);
    try
    {
        for (std::string key; std::getline(lines, key);)
        {
            const bool added = expected.insert(key).second;
            require(set.insert(key).alreadyPresent == !added);
        }
    }
    catch (const std::length_error&)
    {
        require(expected.size() >= 12);
        return;
    }
    require(set.size() == expected.size());

    std::set<std::string> walked;
    for (const String& key : set)
        require(walked.insert(key).second);
    require(walked == expected);
}

// Whatever the text, each generator writes a whole text, or reports and marks its stream failed,
// or raises. The package generator raises before it writes anything.
void checkGenerators(const std::string& text)
{
    std::ofstream(typeMapPath, std::ios::binary | std::ios::trunc) << text;

    std::stringstream package;
    try
    {
        writeContainerDeclarations(package);
        require(package.fail() || package.str().find("$ifile \"zym/Math.tolua\"\n") != std::string::npos);
    }
    catch (const std::exception&)
    {
        require(package.str().empty());
    }

    std::stringstream typedefs;
    try
    {
        writeContainerTypedefs(typedefs);
        const std::string tail = "\n#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H\n";
        const std::string header = typedefs.str();
        require(typedefs.fail() ||
                (header.size() >= tail.size() && header.compare(header.size() - tail.size(), tail.size(), tail) == 0));
    }
    catch (const std::runtime_error&)
    {
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    const std::filesystem::path root =
        std::filesystem::temp_directory_path() / ("zym-fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(root);
    typeMapPath = (root / "LuaContainerPrimitives.xml").string();
    zymIO::Environment::instance().getFilePath(zymIO::Environment::DataFilePath).pushbackPath(root.string());
    // The generators report bad type maps on std::cerr; the fuzzer's own report goes through stdio.
    std::cerr.setstate(std::ios::badbit);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    checkIncludeSet(text);
    checkGenerators(text);
    return 0;
}
