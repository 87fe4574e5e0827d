// Drives both generators in process on arbitrary type-map text, and the include set on its lines
// against std::set, checking what must hold for any input.

#include "LuaContainerGenerator.h"

#include <zym/HashSet.h>
#include <zymIO/Environment.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>

namespace
{

std::string typeMapPath;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// The set may refuse a key only when other keys hold its probe positions: eleven at least.
void checkIncludeSet(const std::string& text)
{
    HashSet<String> set;
    std::set<std::string> expected, walked;
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
        return require(expected.size() >= 12);
    }
    for (const String& key : set)
        require(walked.insert(key).second);
    require(set.size() == expected.size() && walked == expected);
}

// Each generator writes a whole text, or marks its stream failed, or raises; the package
// generator raises before it writes anything.
void checkGenerators(const std::string& text)
{
    std::ofstream(typeMapPath, std::ios::binary | std::ios::trunc) << text;
    std::stringstream package, typedefs;
    try
    {
        writeContainerDeclarations(package);
        require(package.fail() || package.str().find("$ifile \"zym/Math.tolua\"\n") != std::string::npos);
    }
    catch (const std::exception&)
    {
        require(package.str().empty());
    }
    try
    {
        writeContainerTypedefs(typedefs);
        const std::string tail = "\n#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H\n", header = typedefs.str();
        require(typedefs.fail() || (header.size() > tail.size() && header.substr(header.size() - tail.size()) == tail));
    }
    catch (const std::runtime_error&)
    {
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    const auto root = std::filesystem::temp_directory_path() / ("zym-fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(root);
    typeMapPath = (root / "LuaContainerPrimitives.xml").string();
    zymIO::Environment::instance().getFilePath(zymIO::Environment::DataFilePath).pushbackPath(root.string());
    std::cerr.setstate(std::ios::badbit);  // the generators' reports; the fuzzer's own go through stdio
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    checkIncludeSet(text);
    checkGenerators(text);
    return 0;
}
