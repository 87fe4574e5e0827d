// The tool as a build sees it, one row per case: the type map and banner it finds, its arguments,
// targets that held something before the run, how its standard output is connected; then its
// exit status, both standard streams and what became of each target. Whatever the input, the tool
// ends by itself, never by a signal, and within three times the bytes of the map and outputs.

#include "ToolRunner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
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

std::string type(const std::string& attributes)
{
    return "<Type " + attributes + " />\n";
}

std::string repeated(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

const std::string point = type(R"(name="Point" namespace="geo")");

std::string escaped(const std::string& text)
{
    return std::regex_replace(text, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
}

std::string successLines(const std::string& package, const std::string& typedefs)
{
    return "Updated lua container declarations in file " + package + "\nUpdated lua container typedefs in file " +
           typedefs + "\n";
}
const std::string bothLines = successLines("out.pkg", "out.h");

// The line of a load failure, as a pattern; each of the two steps prints it.
std::string loadFailure(const std::string& row, const std::string& description, const std::string& path = typeMapPath)
{
    const std::string line = "TypeMap: Could not load LuaContainerPrimitives\\.xml \\(full file path: '" +
                             escaped(path) + "'\\)\\. Error on row " + row + ": " + description + "\n";
    return line + line;
}

// The report of a bad attribute: the header's own source position, then what a user reads.
std::string attributeReport(const std::string& problem, int row, const std::string& element)
{
    const std::string rule(78, '=');
    return R"(\[/.*/include/zym/Xml\.h:[0-9]+\] )" +
           escaped("XML error: " + problem + ". Error at row " + std::to_string(row) + "\nFile: " + typeMapPath + "\n" +
                   rule + "\n" + element + "\n" + rule + "\n\n");
}

enum Target
{
    Kept,     // still holds what it held before the run
    Written,  // replaced by generated text
};

struct Case
{
    std::string name;
    std::optional<std::string> map = point;  // at the root; none when empty
    std::optional<std::string> banner = std::nullopt;
    std::vector<std::string> arguments = {"out.pkg", "out.h"};
    int status = 0;
    std::string out = bothLines;
    std::string err = "";  // a pattern
    Target package = Written;
    Target typedefs = Written;
    std::function<void()> prepare = [] {};
    std::function<void()> check = [] {};
    Output output = Output::File;
    unsigned long fileSizeLimit = 0;
};

void PrintTo(const Case& c, std::ostream* stream)
{
    *stream << c.name;
}

Case notLoaded(const std::string& name, const std::string& map, const std::string& row, const std::string& description)
{
    return {.name = name, .map = map, .out = "", .err = loadFailure(row, description), .package = Kept, .typedefs = Kept};
}

std::function<void()> expectIn(const std::string& file, const std::string& text, bool present = true)
{
    return [=] { EXPECT_EQ(present, readFile(work + "/" + file).find(text) != std::string::npos) << text; };
}

std::function<void()> expectAll(std::vector<std::function<void()>> checks)
{
    return [=] {
        for (const auto& check : checks)
            check();
    };
}

// Include values of one hash: "az" and "bU" hash alike as blocks of two bytes.
std::string includesOfOneHash(int count)
{
    std::string types;
    for (int bits = 0; bits < count; ++bits)
    {
        std::string key;
        for (int block = 0; block < 4; ++block)
            key += (bits >> block) & 1 ? "bU" : "az";
        types += type(R"(name="T" namespace="n" include=")" + key + "\"");
    }
    return types;
}

std::string randomBytes(std::size_t count)
{
    std::mt19937 random(7);
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(random() & 0xff);
    return bytes;
}

std::string attributes(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " a" + std::to_string(i) + "=\"x\"";
    return text;
}

std::string namespaces(int count)
{
    std::string text = "n";
    for (int i = 1; i < count; ++i)
        text += "::n";
    return text;
}

// The largest inputs are made only when their row runs: the table lives in the process that
// forks the tool, and a child's peak memory counts from its parent's.
std::string tenMegabytes()
{
    return "/*" + std::string(10 << 20, '*') + "*/\n";
}

std::string fiftyMegabytes()
{
    return std::string(50 << 20, 'x');
}

std::vector<Case> cases()
{
    const std::string noMap = loadFailure("0", "Failed to open file", "");
    const std::string deeper = "Elements nested deeper than 32 levels\\.";
    const std::string moreAttributes = "More than 32 attributes on one element\\.";
    const std::string badAttributes = "Error reading Attributes\\.";
    const std::string wrongEncoding = "<a b=\"\xe9";  // read as UTF-8, a character cut off by the end

    std::vector<Case> table = {
        // The command line and the targets.
        {.name = "NoArguments", .arguments = {}, .status = 255, .out = "",
         .err = "Usage: " TOOL_UNDER_TEST "<target file path> <typedef file path>\n", .package = Kept, .typedefs = Kept},
        {.name = "OneArgument", .arguments = {"out.pkg"}, .status = 255, .out = "",
         .err = "Usage: " TOOL_UNDER_TEST "<target file path> <typedef file path>\n", .package = Kept, .typedefs = Kept},
        {.name = "SurplusArguments", .arguments = {"out.pkg", "out.h", "surplus", "--option"},
         .check = [] { EXPECT_FALSE(fs::exists(work + "/surplus")); }},
        {.name = "TargetIsADirectory", .arguments = {"directory", "out.h"},
         .out = "Updated lua container typedefs in file out.h\n", .err = "Could not open file'directory'\n",
         .package = Kept, .prepare = [] { fs::create_directories(work + "/directory"); }},
        {.name = "TargetInAMissingDirectory", .arguments = {"out.pkg", "missing/out.h"},
         .out = "Updated lua container declarations in file out.pkg\n", .err = "Could not open file'missing/out\\.h'\n",
         .typedefs = Kept},
        {.name = "EmptyTargetPath", .arguments = {"", "out.h"}, .out = "Updated lua container typedefs in file out.h\n",
         .err = "Could not open file''\n", .package = Kept},
        {.name = "SameTargetTwice", .arguments = {"out.h", "out.h"}, .out = successLines("out.h", "out.h"),
         .package = Kept, .check = expectIn("out.h", "#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H")},
        // A failed write is not reported: the success line follows all the same.
        {.name = "TargetIsDevFull", .arguments = {"/dev/full", "out.h"}, .out = successLines("/dev/full", "out.h"),
         .package = Kept},
        {.name = "FileSizeLimit", .check = [] { EXPECT_EQ(1000u, fs::file_size(work + "/out.pkg")); },
         .fileSizeLimit = 1000},
        {.name = "StandardOutputAPipeWithoutReader", .out = "",
         .check = expectIn("out.h", "#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H\n"), .output = Output::BrokenPipe},
        {.name = "StandardOutputClosed", .out = "", .check = expectIn("out.pkg", "Updated", false),
         .output = Output::Closed},

        // Finding the type map and the banner.
        {.name = "MissingTypeMap", .map = std::nullopt, .out = "", .err = noMap, .package = Kept, .typedefs = Kept},
        {.name = "DirectoryInPlaceOfTheTypeMap", .map = std::nullopt, .out = "", .err = noMap, .package = Kept,
         .typedefs = Kept, .prepare = [] { fs::create_directories(typeMapPath); fs::create_directories(root + "/data/LuaContainerPrimitives.xml"); }},
        {.name = "TypeMapInData", .map = std::nullopt, .prepare = [] { writeFile(root + "/data/LuaContainerPrimitives.xml", point); },
         .check = expectIn("out.h", "PointVector;")},
        {.name = "TypeMapAtTheRootBeforeTheOneInData", .map = type(R"(name="AtRoot" namespace="n")"),
         .prepare = [] { writeFile(root + "/data/LuaContainerPrimitives.xml", point); },
         .check = expectAll({expectIn("out.h", "AtRootVector;"), expectIn("out.h", "PointVector;", false)})},
        {.name = "BannerUpToItsFirstNulByte", .banner = std::string("/* kept */\n\0/* dropped */\n", 26),
         .check = expectAll({expectIn("out.pkg", "/* kept */\n$#include <"), expectIn("out.h", "/* kept */\n\n#ifndef ")})},
        {.name = "BannerWithoutANewline", .banner = "// banner",
         .check = expectAll({expectIn("out.pkg", "// banner$#include <"), expectIn("out.h", "// banner\n#ifndef ")})},
        {.name = "BannerIsADirectory", .prepare = [] { fs::create_directories(bannerPath); },
         .check = [] { EXPECT_EQ(0u, readFile(work + "/out.pkg").find("$#include <")); }},
        {.name = "TenMegabyteBanner", .prepare = [] { writeFile(bannerPath, tenMegabytes()); },
         .check = [] {
             expectIn("out.pkg", tenMegabytes() + "$#include <")();
             expectIn("out.h", tenMegabytes() + "\n#ifndef ")();
         }},

        // Type maps the XML reader cannot load, and some that it can.
        notLoaded("EmptyTypeMap", "", "0", "Error document empty\\."),
        notLoaded("WhiteSpaceAlone", " \n\t\r\n  ", "0", "Error document empty\\."),
        notLoaded("Utf16Text", std::string("\xff\xfe<\0T\0y\0p\0e\0", 12), "0", "Error document empty\\."),
        notLoaded("RandomBytes", randomBytes(4096), "[0-9]+", "[^\n]*"),
        notLoaded("CutOffInsideATag", point + "<Type name=\"B\" nam", "2", badAttributes),
        notLoaded("UnterminatedAttributeValue", "<Type name=\"A\" namespace=\"n />\n" + point, "2", badAttributes),
        // Read as UTF-8, the last character runs past the end of the text: onto zero bytes only.
        notLoaded("EncodingUtf8mb4", "<?xml version=\"1.0\" encoding=\"utf8mb4\"?>\n" + point + wrongEncoding, "3",
                  "Error parsing Element\\."),
        notLoaded("EncodingNamedTwice", "<?xml encoding=\"ISO-8859-1\" encoding=\"UTF-8\"?>\n" + point + wrongEncoding,
                  "3", "Error parsing Element\\."),
        notLoaded("EncodingAsAnEntity", "<?xml encoding=\"&#85;TF-8\"?>\n" + point + wrongEncoding, "3",
                  "Error parsing Element\\."),
        {.name = "Utf8CharacterCutOffAtTheEnd", .map = "<?xml version=\"1.0\"?>\n" + point + "\xe9"},
        {.name = "Latin1MapEndingInAHighByte", .map = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n" + point + "\xe9"},
        {.name = "ByteOrderMark", .map = "\xef\xbb\xbf" + point,
         .check = expectIn("out.h", "typedef zym::VectorPOD< geo::Point > PointVector;")},
        // The reader takes an unterminated comment to the end of the file, and stops at text at the top.
        {.name = "UnterminatedComment", .map = point + "<!-- never closed\n" + type(R"(name="Lost" namespace="n")"),
         .check = expectAll({expectIn("out.h", "PointVector;"), expectIn("out.h", "LostVector;", false)})},
        {.name = "UnterminatedCommentEndingInALatin1Byte", .map = "<?xml encoding=\"UTF-8\"?>\n" + point + "<!-- caf\xe9"},
        {.name = "CommentOpenerThatSeemsClosed", .map = point + "<!-->" + repeated("<a>", 300) + " -->\n"},
        {.name = "TextAtTheTopBeforeDeepNesting", .map = point + "text\n" + repeated("<a>", 300)},

        // The limits of what the reader is shown, at their edges and slipped past its rules.
        {.name = "NestedThirtyTwoDeep", .map = point + repeated("<a>", 32) + repeated("</a>", 32)},
        notLoaded("NestedThirtyThreeDeepAcrossCrLfRows", point + "\r\n" + repeated("<a>\r\n", 32) + "<a/>", "35", deeper),
        notLoaded("NestedOneHundredThousandDeep", point + repeated("<a>", 100000), "2", deeper),
        notLoaded("EntityAcrossAQuoteBeforeDeepNesting", point + "<a b=\"&#\"#1;\">" + repeated("<a>", 100000), "2", deeper),
        notLoaded("EntitiesAcrossEndTags", point + repeated("<a>&#</a>#1;", 100000), "2", deeper),
        notLoaded("Utf8CharactersOverEndTags", "\xef\xbb\xbf" + point + repeated("<a>\xe0</a>", 100000), "2", deeper),
        {.name = "ThirtyTwoAttributes", .map = "<Type name=\"A\" namespace=\"n\"" + attributes(30) + " />\n"},
        notLoaded("ThirtyThreeAttributesAfterCrRows", point + "\r\r<Type name=\"A\" namespace=\"n\"" + attributes(31) + " />",
                  "4", moreAttributes),
        notLoaded("ThirtyThousandAttributesBehindAnEntity",
                  point + "<Type name=\"A\" namespace=\"n\" b=\"&#\"#1;\"" + attributes(30000) + " />\n", "2", moreAttributes),

        // Attributes.
        {.name = "MissingNamespace",
         .map = "<?xml version=\"1.0\"?>\n" + repeated(point, 10) + type(R"(name="Lonely")"), .status = 1, .out = "",
         .err = attributeReport("Could not locate attribute 'namespace'", 12, R"(<Type name="Lonely" />)"),
         .package = Kept, .typedefs = Kept},
        {.name = "MissingNameAndNamespace", .map = type(R"(isPOD="false")"), .status = 1, .out = "",
         .err = attributeReport("Could not locate attribute 'name'", 1, R"(<Type isPOD="false" />)"), .package = Kept,
         .typedefs = Kept},

        // Sizes.
        {.name = "FiftyMegabyteAttributeValue", .map = std::nullopt,
         .prepare = [] { writeFile(typeMapPath, "<Type name=\"A\" namespace=\"n\" include=\"" + fiftyMegabytes() + "\" />\n"); },
         .check = [] { expectIn("out.pkg", "$#include <" + fiftyMegabytes() + ">\n")(); }},
        {.name = "TwoHundredThousandTypes", .map = std::nullopt,
         .prepare = [] {
             std::string types;
             for (int i = 0; i < 200000; ++i)
                 types += type("name=\"T" + std::to_string(i) + "\" namespace=\"n\"");
             writeFile(typeMapPath, types);
         },
         .check = expectIn("out.h", "typedef zymData::ValueT< n::T199999 > T199999Value;")},

        // Include values the include set cannot place, and namespaces too deep to write.
        {.name = "ElevenIncludesOfOneHash", .map = includesOfOneHash(11)},
        {.name = "TwelveIncludesOfOneHash", .map = includesOfOneHash(12), .status = 1, .out = "",
         .err = "LuaContainerGenerator: HashSet: cannot insert '[azbU]{8}' \\(hash [0-9]+\\): [^\n]*\n",
         .package = Kept, .typedefs = Kept},
        {.name = "TwelveIncludesWithHashesSquaresApart", .map = [] {
             std::string types;
             for (const char* key : {"azAA", "azAB", "azAE", "azAJ", "azAQ", "azAZ", "azAe", "azBM", "azB\\", "azCH", "azC[", "bUAA"})
                 types += type(std::string(R"(name="T" namespace="n" include=")") + key + "\"");
             return types;
         }(), .status = 1, .out = "", .err = "LuaContainerGenerator: HashSet: cannot insert 'bUAA' \\(hash 5082829\\): [^\n]*\n",
         .package = Kept, .typedefs = Kept},
        {.name = "ThirtyTwoNamespaces", .map = type("name=\"T\" namespace=\"" + namespaces(32) + "\"")},
        {.name = "ThirtyThreeNamespacesAfterCrLfRows", .map = point + "\r\n" + type("name=\"T\" namespace=\"" + namespaces(33) + "\""),
         .status = 1, .out = "", .err = "TypeMap: the Type on row 3 lies in more than 32 nested namespaces\\.\n",
         .package = Kept, .typedefs = Kept},
        {.name = "ThirtyThreeNamespacesThroughTheName", .map = type("name=\"n::T\" namespace=\"" + namespaces(32) + "\""),
         .status = 1, .out = "", .err = "TypeMap: the Type on row 1 lies in more than 32 nested namespaces\\.\n",
         .package = Kept, .typedefs = Kept},
        {.name = "TenThousandNamespaces", .map = type("name=\"T\" namespace=\"" + namespaces(10000) + "\""), .status = 1,
         .out = "", .err = "TypeMap: the Type on row 1 [^\n]*\n", .package = Kept, .typedefs = Kept},
    };

    // Only lower-case true and false, after white space, are read as a bool: the typedef step fails
    // on the rest, after the package step has written its file.
    for (const char* spelling : {"True", "TRUE", "1", "0", "", " ", "tru"})
    {
        const std::string element = type(R"(name="Bad" namespace="geo" isPOD=")" + std::string(spelling) + "\"");
        table.push_back({.name = std::string("IsPOD") + (spelling[0] == ' ' ? "Blank" : *spelling ? spelling : "Empty"),
                         .map = point + element, .status = 1, .out = "Updated lua container declarations in file out.pkg\n",
                         .err = attributeReport("Unable to parse attribute isPOD", 2, element.substr(0, element.size() - 1)),
                         .typedefs = Kept, .check = expectIn("out.pkg", "class BadValue")});
    }
    return table;
}

class ToolRuns : public testing::TestWithParam<Case>
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
    if (state == Kept)
        EXPECT_EQ(old, readFile(path)) << path;
    else
        EXPECT_NE(old, readFile(path)) << path;
}

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

} // namespace

TEST_P(ToolRuns, EndInOrderAndSpareWhatTheyCannotReplace)
{
    const Case& c = GetParam();
    if (c.map)
        writeFile(typeMapPath, *c.map);
    if (c.banner)
        writeFile(bannerPath, *c.banner);
    c.prepare();

    const ToolRun run = runTool(TOOL_UNDER_TEST, c.arguments,
                                {.workingDirectory = work, .output = c.output, .fileSizeLimit = c.fileSizeLimit});
    EXPECT_EQ(0, run.signal);
    EXPECT_EQ(c.status, run.exitStatus);
    EXPECT_EQ(c.out, run.out);
    EXPECT_TRUE(std::regex_match(run.err, std::regex(c.err))) << run.err.substr(0, 2000);
    expectTarget(work + "/out.pkg", oldPackage, c.package);
    expectTarget(work + "/out.h", oldTypedefs, c.typedefs);
    expectBoundedMemory(run);
    c.check();
}

INSTANTIATE_TEST_SUITE_P(Table, ToolRuns, testing::ValuesIn(cases()),
                         [](const testing::TestParamInfo<Case>& param) { return param.param.name; });

// Both outputs of the type maps under tests/golden/, byte for byte: each directory holds a map,
// perhaps a banner, and the two files the tool must write from them. The directory without a
// map holds those of the shipped type map, which the tool built on this tree reads.
class GoldenOutputs : public testing::TestWithParam<std::string>
{
};

TEST_P(GoldenOutputs, AreWrittenByteForByte)
{
    const fs::path expected = fs::path(GOLDEN_DIR) / GetParam();
    const bool shipped = !fs::exists(expected / "LuaContainerPrimitives.xml");
    fs::remove_all(root);
    fs::remove_all(work);
    fs::create_directories(work);
    if (!shipped)
    {
        writeFile(typeMapPath, readFile(expected / "LuaContainerPrimitives.xml"));
        if (fs::exists(expected / "zym_copyright.txt"))
            writeFile(bannerPath, readFile(expected / "zym_copyright.txt"));
    }

    const std::vector<std::string> outputs = {"generated_containers.pkg", "generated_container_typedefs.h"};
    const ToolRun run = runTool(shipped ? SHIPPED_TOOL : TOOL_UNDER_TEST, outputs, {.workingDirectory = work});
    EXPECT_EQ(0, run.exitStatus);
    EXPECT_EQ(successLines(outputs[0], outputs[1]), run.out);
    EXPECT_EQ("", run.err);
    for (const std::string& output : outputs)
        EXPECT_EQ(readFile(expected / output), readFile(work + "/" + output)) << output;
}

INSTANTIATE_TEST_SUITE_P(Maps, GoldenOutputs, testing::ValuesIn([] {
                             std::vector<std::string> names;
                             for (const fs::directory_entry& entry : fs::directory_iterator(GOLDEN_DIR))
                                 names.push_back(entry.path().filename().string());
                             std::sort(names.begin(), names.end());
                             return names;
                         }()),
                         [](const testing::TestParamInfo<std::string>& param) {
                             return std::regex_replace(param.param, std::regex("-"), "_");
                         });
