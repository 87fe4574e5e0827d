// Drives both generators in process on arbitrary type-map text, and the include set on
// arbitrary keys (the lines of the same input), checking what must hold for any input.

#include "LuaContainerGenerator.h"
#include "XmlLimits.h"

#include <zym/HashSet.h>
#include <zymIO/Environment.h>

#include <tinyxml.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
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

// Twelve distinct keys of one hash end the process by design (the command-line tests cover
// that stop), so such inputs are passed over.
bool holdsTwelveKeysOfOneHash(const std::vector<std::string>& keys)
{
    std::map<std::uint32_t, std::set<std::string>> byHash;
    for (const std::string& key : keys)
    {
        std::set<std::string>& sameHash = byHash[zym::HashFn<String>()(key)];
        sameHash.insert(key);
        if (sameHash.size() >= 12)
            return true;
    }
    return false;
}

std::vector<std::string> includeValues(const std::string& path)
{
    std::vector<std::string> includes;
    if (findXmlLimitBreach(path))
        return includes;
    TiXmlDocument document(path.c_str());
    if (!document.LoadFile(TIXML_ENCODING_UNKNOWN))
        return includes;
    for (const TiXmlElement* type = document.FirstChildElement("Type"); type; type = type->NextSiblingElement("Type"))
        if (const char* include = type->Attribute("include"))
            includes.push_back(include);
    return includes;
}

void checkIncludeSet(const std::string& text)
{
    std::vector<std::string> keys;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        keys.push_back(line);
    if (holdsTwelveKeysOfOneHash(keys))
        return;

    HashSet<String> set;
    std::set<std::string> expected;
    for (const std::string& key : keys)
        require(set.insert(key).alreadyPresent == !expected.insert(key).second);
    require(set.size() == expected.size());

    std::set<std::string> walked;
    for (const String& key : set)
        require(walked.insert(key).second);
    require(walked == expected);
}

void checkGenerators(const std::string& text)
{
    std::ofstream(typeMapPath, std::ios::binary | std::ios::trunc) << text;
    if (holdsTwelveKeysOfOneHash(includeValues(typeMapPath)))
        return;

    std::stringstream package;
    try
    {
        writeContainerDeclarations(package);
        require(package.fail() || package.str().find("$ifile \"zym/Math.tolua\"\n") != std::string::npos);
    }
    catch (const std::runtime_error&)
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
