// Every input the tool reads, made hostile: the type map, the banner, the command line and the
// targets. For each case: the exit status, the standard streams, and what became of targets
// that existed before the run. The tool must never die by a signal, whatever the input.

#include "ToolRunner.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <random>
#include <regex>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{

const std::string root = TEST_SOURCE_ROOT;
const std::string work = TEST_SOURCE_ROOT "-work";
const std::string typeMapPath = root + "/LuaContainerPrimitives.xml";
const std::string bannerPath = root + "/tools/Generator/zym_copyright.txt";
const std::string oldPackage = "old package";
const std::string oldTypedefs = "old header";
const std::string goodTypeMap = "<Type name=\"Point\" namespace=\"geo\" />\n";

std::string escapeRegex(const std::string& text)
{
    return std::regex_replace(text, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
}

// The line of a load failure, as a pattern; each of the two steps prints it.
std::string loadFailure(const std::string& fullPath, const std::string& row, const std::string& description)
{
    const std::string line = "TypeMap: Could not load LuaContainerPrimitives\\.xml \\(full file path: '" +
                             escapeRegex(fullPath) + "'\\)\\. Error on row " + row + ": " + description + "\n";
    return line + line;
}

std::string successLines(const std::string& package, const std::string& typedefs)
{
    return "Updated lua container declarations in file " + package + "\nUpdated lua container typedefs in file " +
           typedefs + "\n";
}

enum class Target
{
    Kept,     // still holds what it held before the run
    Written,  // replaced by generated text
};

struct HostileCase
{
    std::string name;
    std::function<void()> prepare;
    std::vector<std::string> arguments;
    int exitStatus;
    std::string out;
    std::string errPattern;
    Target package;
    Target typedefs;
    std::function<void()> check = [] {};
};

void writeTypeMap(const std::string& xml) { writeFile(typeMapPath, xml); }

void expectBoundedMemory(const ToolRun& run)
{
#ifndef ZYM_SANITIZED
    const auto size = [](const std::string& path) { return fs::is_regular_file(path) ? fs::file_size(path) : 0; };
    const std::uintmax_t bytes = size(typeMapPath) + size(work + "/out.pkg") + size(work + "/out.h");
    EXPECT_LT(static_cast<std::uintmax_t>(run.peakMemoryKiB) * 1024, 3 * bytes + (64u << 20));
#else
    (void)run;
#endif
}

std::string keysOfOneHash(int count)
{
    // "az" and "bU" hash alike, so all keys of four such blocks share one hash.
    std::string types;
    for (int bits = 0; bits < count; ++bits)
    {
        std::string key;
        for (int block = 0; block < 4; ++block)
            key += (bits >> block) & 1 ? "bU" : "az";
        types += "<Type name=\"T\" namespace=\"n\" include=\"" + key + "\" />\n";
    }
    return types;
}

const std::vector<std::string> bothFiles = {"out.pkg", "out.h"};

std::vector<HostileCase> hostileCases()
{
    const std::string notFound = loadFailure("", "0", "Failed to open file");
    const std::string empty = loadFailure(typeMapPath, "0", "Error document empty\\.");
    const std::string badAttributes = loadFailure(typeMapPath, "2", "Error reading Attributes\\.");
    const std::string anyLoadFailure = loadFailure(typeMapPath, "[0-9]+", "[^\n]*");
    const std::string written = successLines("out.pkg", "out.h");

    return {
        {"MissingTypeMap", [] {}, bothFiles, 0, "", notFound, Target::Kept, Target::Kept},
        {"DirectoryInPlaceOfTheTypeMap", [] { fs::create_directories(typeMapPath); fs::create_directories(root + "/data/LuaContainerPrimitives.xml"); },
         bothFiles, 0, "", notFound, Target::Kept, Target::Kept},
        {"EmptyTypeMap", [] { writeTypeMap(""); }, bothFiles, 0, "", empty, Target::Kept, Target::Kept},
        {"WhiteSpaceAlone", [] { writeTypeMap(" \n\t\r\n  "); }, bothFiles, 0, "", empty, Target::Kept, Target::Kept},
        {"RandomBytes",
         [] {
             std::mt19937 random(7);
             std::string bytes;
             for (int i = 0; i < 4096; ++i)
                 bytes += static_cast<char>(random() & 0xff);
             writeTypeMap(bytes);
         },
         bothFiles, 0, "", anyLoadFailure, Target::Kept, Target::Kept},
        {"TruncatedXml", [] { writeTypeMap(goodTypeMap + "<Type name=\"B\" nam"); }, bothFiles, 0, "", badAttributes,
         Target::Kept, Target::Kept},
        {"UnterminatedAttributeValue", [] { writeTypeMap("<Type name=\"A\" namespace=\"n />\n" + goodTypeMap); },
         bothFiles, 0, "", badAttributes, Target::Kept, Target::Kept},
        // The XML reader takes an unterminated comment to the end of the file as a comment.
        {"UnterminatedComment", [] { writeTypeMap(goodTypeMap + "<!-- never closed\n<Type name=\"Lost\" namespace=\"n\" />\n"); },
         bothFiles, 0, written, "", Target::Written, Target::Written,
         [] {
             EXPECT_NE(std::string::npos, readFile(work + "/out.h").find("PointVector;"));
             EXPECT_EQ(std::string::npos, readFile(work + "/out.h").find("LostVector;"));
         }},
        {"ByteOrderMarkBeforeAGoodMap", [] { writeTypeMap("\xef\xbb\xbf" + goodTypeMap); }, bothFiles, 0, written, "",
         Target::Written, Target::Written,
         [] {
             EXPECT_EQ(0u, readFile(work + "/out.pkg").find("$#include <"));
             EXPECT_NE(std::string::npos, readFile(work + "/out.h").find("typedef zym::VectorPOD< geo::Point > PointVector;"));
         }},
        {"Utf16Text",
         [] {
             std::string utf16 = "\xff\xfe";
             for (const char c : goodTypeMap)
                 utf16 += std::string(1, c) + '\0';
             writeTypeMap(utf16);
         },
         bothFiles, 0, "", empty, Target::Kept, Target::Kept},
        {"Utf8CharacterCutOffAtTheEnd", [] { writeTypeMap("<?xml version=\"1.0\"?>\n" + goodTypeMap + "\xe9"); },
         bothFiles, 0, written, "", Target::Written, Target::Written},
        {"Latin1MapEndingInAHighByte",
         [] { writeTypeMap("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n" + goodTypeMap + "\xe9"); },
         bothFiles, 0, written, "", Target::Written, Target::Written},
        {"FiftyMegabyteAttributeValue",
         [] { writeTypeMap("<Type name=\"A\" namespace=\"n\" include=\"" + std::string(50 << 20, 'x') + "\" />\n"); },
         bothFiles, 0, written, "", Target::Written, Target::Written,
         [] { EXPECT_NE(std::string::npos, readFile(work + "/out.pkg").find("$#include <" + std::string(50 << 20, 'x') + ">\n")); }},
        {"NestedOneHundredThousandDeep",
         [] {
             std::string opened;
             for (int i = 0; i < 100000; ++i)
                 opened += "<a>";
             writeTypeMap(goodTypeMap + opened);
         },
         bothFiles, 0, "", loadFailure(typeMapPath, "2", "Elements nested deeper than 32 levels\\."), Target::Kept,
         Target::Kept},
        {"ThirtyThousandAttributesOnOneElement",
         [] {
             std::string attributes;
             for (int i = 0; i < 30000; ++i)
                 attributes += " a" + std::to_string(i) + "=\"x\"";
             writeTypeMap(goodTypeMap + "<Type name=\"A\" namespace=\"n\"" + attributes + " />\n");
         },
         bothFiles, 0, "", loadFailure(typeMapPath, "2", "More than 32 attributes on one element\\."), Target::Kept,
         Target::Kept},
        {"TwoHundredThousandTypes",
         [] {
             std::string types;
             for (int i = 0; i < 200000; ++i)
                 types += "<Type name=\"T" + std::to_string(i) + "\" namespace=\"n\" />\n";
             writeTypeMap(types);
         },
         bothFiles, 0, written, "", Target::Written, Target::Written,
         [] {
             const std::string typedefs = readFile(work + "/out.h");
             EXPECT_NE(std::string::npos, typedefs.find("typedef zymData::ValueT< n::T199999 > T199999Value;"));
         }},
        {"TwelveIncludesOfOneHash", [] { writeTypeMap(keysOfOneHash(12)); }, bothFiles, 1, "",
         "LuaContainerGenerator: HashSet: cannot insert '[azbU]{8}' \\(hash [0-9]+\\): [^\n]*\n", Target::Kept, Target::Kept},
        {"ElevenIncludesOfOneHash", [] { writeTypeMap(keysOfOneHash(11)); }, bothFiles, 0, written, "",
         Target::Written, Target::Written},
        {"TargetIsADirectory", [] { writeTypeMap(goodTypeMap); fs::create_directories(work + "/directory"); },
         {"directory", "out.h"}, 0, "Updated lua container typedefs in file out.h\n",
         "Could not open file'directory'\n", Target::Kept, Target::Written},
        {"TargetInAMissingDirectory", [] { writeTypeMap(goodTypeMap); }, {"out.pkg", "missing/out.h"}, 0,
         "Updated lua container declarations in file out.pkg\n", "Could not open file'missing/out\\.h'\n",
         Target::Written, Target::Kept},
        {"EmptyTargetPath", [] { writeTypeMap(goodTypeMap); }, {"", "out.h"}, 0,
         "Updated lua container typedefs in file out.h\n", "Could not open file''\n", Target::Kept, Target::Written},
        {"SameTargetTwice", [] { writeTypeMap(goodTypeMap); }, {"out.h", "out.h"}, 0, successLines("out.h", "out.h"),
         "", Target::Kept, Target::Written,
         [] { EXPECT_EQ(0u, readFile(work + "/out.h").find("\n#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H\n")); }},
        // A failed write to an opened target is not reported: the success line follows all the same.
        {"TargetIsDevFull", [] { writeTypeMap(goodTypeMap); }, {"/dev/full", "out.h"}, 0,
         successLines("/dev/full", "out.h"), "", Target::Kept, Target::Written},
        {"BannerIsADirectory", [] { writeTypeMap(goodTypeMap); fs::create_directories(bannerPath); }, bothFiles, 0,
         written, "", Target::Written, Target::Written,
         [] { EXPECT_EQ(0u, readFile(work + "/out.pkg").find("$#include <")); }},
        {"TenMegabyteBanner",
         [] {
             writeTypeMap(goodTypeMap);
             writeFile(bannerPath, "/*" + std::string(10 << 20, '*') + "*/\n");
         },
         bothFiles, 0, written, "", Target::Written, Target::Written,
         [] {
             const std::string banner = "/*" + std::string(10 << 20, '*') + "*/\n";
             EXPECT_EQ(0u, readFile(work + "/out.pkg").find(banner + "$#include <"));
             EXPECT_EQ(0u, readFile(work + "/out.h").find(banner + "\n#ifndef "));
         }},
    };
}

void PrintTo(const HostileCase& c, std::ostream* stream)
{
    *stream << c.name;
}

class HostileInput : public testing::TestWithParam<HostileCase>
{
protected:
    void SetUp() override
    {
        fs::remove_all(root);
        fs::remove_all(work);
        fs::create_directories(root);
        writeFile(work + "/out.pkg", oldPackage);
        writeFile(work + "/out.h", oldTypedefs);
    }

    // The next test that shares the root must not find a directory where its type map goes.
    void TearDown() override { fs::remove_all(root); }
};

void expectTarget(const std::string& path, const std::string& old, Target state)
{
    if (state == Target::Kept)
        EXPECT_EQ(old, readFile(path)) << path;
    else
        EXPECT_NE(old, readFile(path)) << path;
}

} // namespace

TEST_P(HostileInput, EndsInOrderAndSparesWhatItCannotReplace)
{
    const HostileCase& c = GetParam();
    c.prepare();
    const ToolRun run = runTool(TOOL_UNDER_TEST, c.arguments, work);

    EXPECT_EQ(0, run.signal);
    EXPECT_EQ(c.exitStatus, run.exitStatus);
    EXPECT_EQ(c.out, run.out);
    EXPECT_TRUE(std::regex_match(run.err, std::regex(c.errPattern))) << run.err.substr(0, 2000);
    expectTarget(work + "/out.pkg", oldPackage, c.package);
    expectTarget(work + "/out.h", oldTypedefs, c.typedefs);
    expectBoundedMemory(run);
    c.check();
}

INSTANTIATE_TEST_SUITE_P(Table, HostileInput, testing::ValuesIn(hostileCases()),
                         [](const testing::TestParamInfo<HostileCase>& param) { return param.param.name; });
