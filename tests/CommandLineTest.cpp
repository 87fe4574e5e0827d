// The tool as a build sees it, one row per case: the type map and banner it finds, its arguments,
// targets that held something before the run, how its standard output is connected; then its
// exit status, both standard streams and what became of each target. Whatever the input, the tool
// ends by itself, never by a signal, and within three times the bytes of the map and outputs.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{

const std::string root = TEST_SOURCE_ROOT;
const std::string work = TEST_SOURCE_ROOT "-work";
const std::string typeMapPath = root + "/LuaContainerPrimitives.xml";
const std::string bannerPath = root + "/tools/Generator/zym_copyright.txt";

// Where a run's standard output goes: a file read back, a pipe whose reader has gone, nowhere.
enum class Output
{
    File,
    BrokenPipe,
    Closed
};

struct ToolRun
{
    int exitStatus, signal; // -1 for a process that did not exit by itself; 0 without a signal
    long peakMemoryKiB;
    double seconds;
    std::string out, err;
};

std::string readFile(const std::string& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

void writeFile(const std::string& path, const std::string& content)
{
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

// Runs `program` in `work` with exactly `arguments` behind its name, no input, and the limits
// given (0: none) on file size and address space.
ToolRun runTool(const char* program, const std::vector<std::string>& arguments, Output output, rlim_t fileSize,
                rlim_t addressSpace)
{
    std::vector<char*> argv = {const_cast<char*>(program)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const std::string out = work + ".out", err = work + ".err";
    writeFile(out, "");
    writeFile(err, "");
    int pipeEnds[2] = {-1, -1};
    if (output == Output::BrokenPipe && ::pipe(pipeEnds) == 0)
        ::close(pipeEnds[0]);
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0)
    {
        const rlimit fileLimit = {fileSize, fileSize}, addressLimit = {addressSpace, addressSpace};
        const int stdoutTarget = output == Output::File ? ::open(out.c_str(), O_WRONLY) : pipeEnds[1];
        const bool ready = ::dup2(::open("/dev/null", O_RDONLY), 0) == 0 &&
                           ::dup2(::open(err.c_str(), O_WRONLY), 2) == 2 && ::chdir(work.c_str()) == 0 &&
                           (fileSize == 0 || ::setrlimit(RLIMIT_FSIZE, &fileLimit) == 0) &&
                           (addressSpace == 0 || ::setrlimit(RLIMIT_AS, &addressLimit) == 0) &&
                           (output == Output::Closed ? ::close(1) == 0 : ::dup2(stdoutTarget, 1) == 1);
        for (int descriptor = 3; descriptor < 64; ++descriptor)
            ::close(descriptor);
        if (ready)
            ::execv(program, argv.data());
        ::_exit(127);
    }
    if (pipeEnds[1] >= 0)
        ::close(pipeEnds[1]);
    int status = 0;
    rusage usage = {};
    ::wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            WIFSIGNALED(status) ? WTERMSIG(status) : 0,
            usage.ru_maxrss,
            seconds.count(),
            readFile(out),
            readFile(err)};
}

std::string type(const std::string& attributes) { return "<Type " + attributes + " />\n"; }
const std::string point = type(R"(name="Point" namespace="geo")");

std::string repeated(const std::string& text, int count)
{
    std::string result;
    while (count-- > 0)
        result += text;
    return result;
}

// "first rest1 rest2 ...", with "=\"x\"" behind each numbered attribute " a<i>".
std::string listed(const std::string& first, const std::string& rest, int count)
{
    std::string text = first;
    for (int i = 1; i < count; ++i)
        text += rest + std::to_string(i) + (rest == " a" ? "=\"x\"" : "");
    return text;
}

std::string escaped(const std::string& text)
{
    return std::regex_replace(text, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
}

std::string successLines(const std::string& package, const std::string& typedefs)
{
    return (package.empty() ? "" : "Updated lua container declarations in file " + package + "\n") +
           (typedefs.empty() ? "" : "Updated lua container typedefs in file " + typedefs + "\n");
}

// The line of a load failure, as a pattern; each of the two steps prints it.
std::string loadFailure(const std::string& row, const std::string& description, const std::string& path = typeMapPath)
{
    return repeated("TypeMap: Could not load LuaContainerPrimitives\\.xml \\(full file path: '" + escaped(path) +
                        "'\\)\\. Error on row " + row + ": " + description + "\n",
                    2);
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
    Kept,
    Written
}; // what a target holds after the run: what it held before, or generated text

struct Contains
{
    std::string file, text;
    bool present = true;
};

struct Case
{
    std::string name;
    const char* tool = TOOL_UNDER_TEST;
    std::optional<std::string> map = point;
    std::optional<std::string> banner = std::nullopt;
    std::vector<std::string> arguments = {"out.pkg", "out.h"};
    int status = 0;
    std::string out = successLines("out.pkg", "out.h");
    std::string err = ""; // a pattern
    Target package = Written, typedefs = Written;
    std::function<void()> prepare = [] {};
    std::vector<Contains> contains = {};
    std::function<void()> check = [] {};
    Output output = Output::File;
    rlim_t fileSizeLimit = 0;
    rlim_t addressSpaceLimit = 0; // not under the sanitizers, which reserve more for themselves
    double seconds = 10;          // ten times as long under the sanitizers
};

void PrintTo(const Case& c, std::ostream* stream) { *stream << c.name; }

Case notLoaded(const std::string& name, const std::string& map, const std::string& row, const std::string& description)
{
    return {
        .name = name, .map = map, .out = "", .err = loadFailure(row, description), .package = Kept, .typedefs = Kept};
}

Case stopped(const std::string& name, const std::string& map, const std::string& err)
{
    return {.name = name, .map = map, .status = 1, .out = "", .err = err, .package = Kept, .typedefs = Kept};
}

std::string hugeValue() { return std::string(50u << 20, 'x'); }

// Types whose include values have one hash: at each place one of two blocks of equal hash.
using Blocks = std::vector<std::pair<std::string, std::string>>;
std::string includesOfOneHash(int count, const Blocks& blocks = Blocks(4, {"az", "bU"}))
{
    std::string types;
    for (int bits = 0; bits < count; ++bits)
    {
        std::string include;
        for (std::size_t place = 0; place < blocks.size(); ++place)
            include += (bits >> place & 1) != 0 ? blocks[place].second : blocks[place].first;
        types += type(R"(name="T" namespace="n" include=")" + include + "\"");
    }
    return types;
}

// A file of `bytes` that takes no room on disk: zeros behind `text`.
void writeSparseFile(const std::string& path, const std::string& text, std::uintmax_t bytes)
{
    writeFile(path, text);
    fs::resize_file(path, bytes);
}

std::vector<Case> cases()
{
    const std::string usage = "Usage: " TOOL_UNDER_TEST "<target file path> <typedef file path>\n";
    const std::string noMap = loadFailure("0", "Failed to open file", "");
    const std::string deeper = "Elements nested deeper than 32 levels\\.";
    const std::string moreAttributes = "More than 32 attributes on one element\\.";
    const std::string cutOff = "<a b=\"\xe9"; // read as UTF-8, a character cut off by the end
    const std::string unplaceable = "LuaContainerGenerator: HashSet: cannot insert ";
    const std::string allHeld = ": other keys hold all eleven of its probe positions even in a table of 673 slots for ";
    const std::string tooDeep = " lies in more than 32 nested namespaces\\.\n";
    std::mt19937 random(7);
    const std::string nodes = "More than 100000 nodes besides the Type elements\\.";
    const std::string tooLarge = "File larger than 256 MiB\\.";
    const auto overwriting = [](const std::string& kind, const std::string& source, const std::string& target) {
        return "LuaContainerGenerator: will not overwrite the " + kind + " '" + escaped(source) +
               "' with the target '" + escaped(target) + "'\n";
    };
    std::string twoLetterIncludes, randomBytes(4096, ' ');
    for (const char first : std::string("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"))
        for (const char second : std::string("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"))
            twoLetterIncludes += type(std::string("name='T' namespace='n' include='") + first + second + "'");
    for (char& byte : randomBytes)
        byte = static_cast<char>(random() & 0xff);

    // clang-format off
    std::vector<Case> table = {
        // The command line, the targets and the standard output.
        {.name = "NoArguments", .arguments = {}, .status = 255, .out = "", .err = usage, .package = Kept,
         .typedefs = Kept},
        {.name = "OneArgument", .arguments = {"out.pkg"}, .status = 255, .out = "", .err = usage, .package = Kept,
         .typedefs = Kept},
        {.name = "SurplusArguments", .arguments = {"out.pkg", "out.h", "surplus"},
         .check = [] { EXPECT_FALSE(fs::exists(work + "/surplus")); }},
        {.name = "TargetIsADirectory", .arguments = {"directory", "out.h"}, .out = successLines("", "out.h"),
         .err = "Could not open file'directory'\n", .package = Kept,
         .prepare = [] { fs::create_directories(work + "/directory"); }},
        {.name = "TargetInAMissingDirectory", .arguments = {"out.pkg", "missing/out.h"},
         .out = successLines("out.pkg", ""), .err = "Could not open file'missing/out\\.h'\n", .typedefs = Kept},
        {.name = "SameTargetTwice", .arguments = {"out.h", "out.h"}, .out = successLines("out.h", "out.h"),
         .package = Kept, .contains = {{"out.h", "#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H"}}},
        // A failed write is not reported: the success line follows all the same.
        {.name = "TargetIsDevFull", .arguments = {"/dev/full", "out.h"}, .out = successLines("/dev/full", "out.h"),
         .package = Kept},
        {.name = "FileSizeLimit", .check = [] { EXPECT_EQ(1000u, fs::file_size(work + "/out.pkg")); },
         .fileSizeLimit = 1000},
        {.name = "StandardOutputAPipeWithoutReader", .out = "",
         .contains = {{"out.h", "#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H\n"}}, .output = Output::BrokenPipe},
        {.name = "StandardOutputClosed", .out = "", .contains = {{"out.pkg", "Updated", false}},
         .output = Output::Closed},

        // Finding the type map and the banner.
        {.name = "MissingTypeMap", .map = std::nullopt, .out = "", .err = noMap, .package = Kept, .typedefs = Kept},
        {.name = "TypeMapInData", .map = std::nullopt,
         .prepare = [] { writeFile(root + "/data/LuaContainerPrimitives.xml", point); },
         .contains = {{"out.h", "PointVector;"}}},
        {.name = "TypeMapALinkToAFile", .map = std::nullopt,
         .prepare = [] { fs::create_symlink(GOLDEN_DIR "/no-types/LuaContainerPrimitives.xml", typeMapPath); },
         .contains = {{"out.h", "#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H"}}},
        {.name = "TypeMapALinkToADevice", .map = std::nullopt, .out = "", .err = noMap, .package = Kept,
         .typedefs = Kept, .prepare = [] { fs::create_symlink("/dev/zero", typeMapPath); }},
        {.name = "TypeMapAtTheRootBeforeTheOneInData", .map = type(R"(name="AtRoot" namespace="n")"),
         .prepare = [] { writeFile(root + "/data/LuaContainerPrimitives.xml", point); },
         .contains = {{"out.h", "AtRootVector;"}, {"out.h", "PointVector;", false}}},
        {.name = "BannerUpToItsFirstNulByte", .banner = std::string("/* kept */\n\0/* dropped */\n", 26),
         .contains = {{"out.pkg", "/* kept */\n$#include <"}, {"out.h", "/* kept */\n\n#ifndef "},
                      {"out.h", "dropped", false}}},
        {.name = "BannerIsADirectory", .prepare = [] { fs::create_directories(bannerPath); },
         .check = [] { EXPECT_EQ(0u, readFile(work + "/out.pkg").find("$#include <")); }},
        {.name = "TenMegabyteBanner", .prepare = [] { writeFile(bannerPath, std::string(10u << 20, '*')); },
         .check = [] { EXPECT_EQ((std::pair<std::size_t, std::size_t>(10u << 20, 10u << 20)),
                                 std::pair(readFile(work + "/out.pkg").find("$#include <"),
                                           readFile(work + "/out.h").find("\n#ifndef "))); }},

        // Type maps the XML reader cannot load, and some that it can.
        notLoaded("EmptyTypeMap", "", "0", "Error document empty\\."),
        notLoaded("Utf16Text", std::string("\xff\xfe<\0T\0y\0p\0e\0", 12), "0", "Error document empty\\."),
        notLoaded("RandomBytes", randomBytes, "[0-9]+", "[^\n]*"),
        notLoaded("CutOffInsideATag", point + "<Type name=\"B\" nam", "2", "Error reading Attributes\\."),
        notLoaded("UnterminatedAttributeValue", "<Type name=\"A\" namespace=\"n />\n" + point, "2",
                  "Error reading Attributes\\."),
        // Read as UTF-8, the last character runs past the end of the text: onto zero bytes only.
        notLoaded("EncodingUtf8mb4", "<?xml encoding=\"utf8mb4\"?>\n" + point + cutOff, "3",
                  "Error parsing Element\\."),
        notLoaded("EncodingNamedTwice", "<?xml encoding=\"ISO-8859-1\" encoding=\"UTF-8\"?>\n" + point + cutOff, "3",
                  "Error parsing Element\\."),
        notLoaded("EncodingAsAnEntity", "<?xml encoding=\"&#85;TF-8\"?>\n" + point + cutOff, "3",
                  "Error parsing Element\\."),
        {.name = "ByteOrderMark", .map = "\xef\xbb\xbf" + point,
         .contains = {{"out.h", "zym::VectorPOD< geo::Point > PointVector;"}}},
        // The reader takes an unterminated comment to the end of the file, and stops at text at the top.
        {.name = "UnterminatedComment", .map = point + "<!-- never closed\n" + type(R"(name="Lost" namespace="n")"),
         .contains = {{"out.h", "PointVector;"}, {"out.h", "LostVector;", false}}},
        {.name = "UnterminatedCommentEndingInALatin1Byte",
         .map = "<?xml encoding=\"UTF-8\"?>\n" + point + "<!-- caf\xe9"},
        {.name = "CommentOpenerThatSeemsClosed", .map = point + "<!-->" + repeated("<a>", 300) + " -->\n"},
        {.name = "TextAtTheTopBeforeDeepNesting", .map = point + "text\n" + repeated("<a>", 300)},

        // The limits of what the reader is shown, at their edges, and slipped past its rules.
        {.name = "NestedThirtyTwoDeep", .map = point + repeated("<a>", 32) + repeated("</a>", 32)},
        notLoaded("NestedThirtyThreeDeepBehindAClosedElementAcrossCrLfRows",
                  point + "\r\n" + repeated("<a>\r\n", 31) + "<b>x</b><a>\r\n<a/>", "35", deeper),
        notLoaded("EntityAcrossAQuoteBeforeDeepNesting", point + "<a b=\"&#\"#1;\">" + repeated("<a>", 100000), "2",
                  deeper),
        notLoaded("RepeatedAttributeBeforeDeepNesting", point + "<a x=\"1\" x=\"2\">" + repeated("<a>", 40), "2",
                  "Error parsing Element\\."),
        notLoaded("EndTagInAnotherCaseBeforeDeepNesting", point + "<b></B>" + repeated("<a>", 40), "2",
                  "Error reading end tag\\."),
        notLoaded("EntitiesAcrossEndTags", point + repeated("<a>&#</a>#1;", 100000), "2", deeper),
        notLoaded("Utf8CharactersOverEndTags", "\xef\xbb\xbf" + point + repeated("<a>\xe0</a>", 100000), "2", deeper),
        {.name = "ThirtyTwoAttributes", .map = listed("<Type name=\"A\" namespace=\"n\"", " a", 31) + " />"},
        notLoaded("ThirtyThreeAttributesAfterCrRows",
                  point + "\r\r" + listed("<Type name=\"A\" namespace=\"n\"", " a", 32) + " />", "4", moreAttributes),
        notLoaded("ThirtyThousandAttributesBehindAnEntity", point + listed("<Type b=\"&#\"#1;\"", " a", 30000) + " />",
                  "2", moreAttributes),

        // Attributes.
        stopped("MissingNamespace", "<?xml version=\"1.0\"?>\n" + repeated(point, 10) + type(R"(name="Lonely")"),
                attributeReport("Could not locate attribute 'namespace'", 12, R"(<Type name="Lonely" />)")),
        stopped("MissingNameAndNamespace", type(R"(isPOD="false")"),
                attributeReport("Could not locate attribute 'name'", 1, R"(<Type isPOD="false" />)")),

        // Sizes. The largest inputs are made only when their row runs: the table lives in the
        // process that forks the tool, and a child's peak memory counts from its parent's.
        {.name = "FiftyMegabyteAttributeValue", .map = std::nullopt,
         .prepare = [] { writeFile(typeMapPath, type("name='A' namespace='n' include='" + hugeValue() + "'")); },
         .check = [] { EXPECT_NE(std::string::npos, readFile(work + "/out.pkg").find(hugeValue() + ">\n")); }},
        {.name = "TwoHundredThousandTypes", .map = std::nullopt,
         .prepare = [] { writeFile(typeMapPath, repeated(point, 199999) + type(R"(name="Last" namespace="n")")); },
         .contains = {{"out.h", "typedef zymData::ValueT< n::Last > LastValue;"}}},

        // Include values the include set cannot place, and namespaces too deep to write.
        {.name = "ElevenIncludesOfOneHash", .map = includesOfOneHash(11)},
        stopped("TwelveIncludesOfOneHash", includesOfOneHash(12),
                unplaceable + "'bUbUazbU' \\(hash 2133336812\\)" + allHeld + "16 keys\n"),
        stopped("TwelveIncludesWithHashesSquaresApart",
                std::regex_replace("azAA azAB azAE azAJ azAQ azAZ azAe azBM azB\\ azCH azC[ bUAA ",
                                   std::regex("(\\S+) "), type(R"(name="T" namespace="n" include="$1")")),
                unplaceable + "'bUAA' \\(hash 5082829\\)" + allHeld + "16 keys\n"),
        {.name = "ThirtyTwoNamespaces", .map = type("name=\"T\" namespace=\"" + listed("n", "::n", 32) + "\"")},
        stopped("ThirtyThreeNamespacesAfterCrLfRows",
                point + "\r\n" + type("name=\"T\" namespace=\"" + listed("n", "::n", 33) + "\""),
                "TypeMap: the Type on row 3" + tooDeep),
        stopped("ThirtyThreeNamespacesThroughTheName",
                type("name=\"n::T\" namespace=\"" + listed("n", "::n", 32) + "\""),
                "TypeMap: the Type on row 1" + tooDeep),
        stopped("TenThousandNamespaces", type("name=\"T\" namespace=\"" + listed("n", "::n", 10000) + "\""),
                "TypeMap: the Type on row 1" + tooDeep),
        stopped("TwoLetterIncludes", twoLetterIncludes,
                unplaceable + "'fA' \\(hash 3839\\): other keys hold all eleven of its probe positions even in a "
                              "table of 10949 slots for 291 keys\n"),
        // A refused value is written on one line, its control bytes as the reader writes them.
        stopped("IncludesOfOneHashWithALineFeedAndAnEscape",
                includesOfOneHash(12, {{"`/", "a&#10;"}, {"`@", "a\x1b"}, {"az", "bU"}, {"az", "bU"}}),
                unplaceable + "'a&#x0A;a&#x1B;azbU' \\(hash 2356742541\\)" + allHeld + "16 keys\n"),
        stopped("IncludesOfOneHashWithATab", includesOfOneHash(12, {{"`.", "a&#9;"}, {"az", "bU"}, {"az", "bU"}, {"az", "bU"}}),
                unplaceable + "'a&#x09;bUazbU' \\(hash 4264028723\\)" + allHeld + "16 keys\n"),
        // The map is trusted: an include value with a line feed writes a row of its own.
        {.name = "IncludeWithALineFeed", .map = type("name='A' namespace='n' include='a>&#10;$#include <b'"),
         .contains = {{"out.pkg", "\n$#include <a>\n$#include <b>\n"}}},

        // The run's own sources are never targets: nothing is opened for writing, and the run stops.
        {.name = "PackageTargetIsTheTypeMap", .arguments = {typeMapPath, "out.h"}, .status = 1, .out = "",
         .err = overwriting("type map", typeMapPath, typeMapPath), .package = Kept, .typedefs = Kept, .seconds = 1},
        {.name = "TypedefTargetIsAHardLinkToTheTypeMap", .arguments = {"out.pkg", "map"}, .status = 1,
         .out = successLines("out.pkg", ""), .err = overwriting("type map", typeMapPath, "map"), .typedefs = Kept,
         .prepare = [] { fs::create_hard_link(typeMapPath, work + "/map"); }, .seconds = 1},
        {.name = "TypedefTargetIsALinkToTheBanner", .banner = "/* b */\n", .arguments = {"out.pkg", "banner"},
         .status = 1, .out = successLines("out.pkg", ""), .err = overwriting("banner", bannerPath, "banner"),
         .typedefs = Kept, .prepare = [] { fs::create_symlink(bannerPath, work + "/banner"); }, .seconds = 1},

        // Sources read only as far as they count, and no further.
        {.name = "GibibyteBannerOfZeros", .prepare = [] { writeSparseFile(bannerPath, "", 1u << 30); },
         .check = [] { EXPECT_EQ(0u, readFile(work + "/out.pkg").find("$#include <")); }, .seconds = 1},
        {.name = "BannerBeforeAGibibyteOfZeros", .prepare = [] { writeSparseFile(bannerPath, "/* b */\n", 1u << 30); },
         .check = [] { EXPECT_EQ(0u, readFile(work + "/out.h").find("/* b */\n\n#ifndef ")); }, .seconds = 1},
        {.name = "FourGibibyteTypeMap", .map = std::nullopt, .out = "", .err = loadFailure("0", tooLarge),
         .package = Kept, .typedefs = Kept, .prepare = [] { writeSparseFile(typeMapPath, point, 4ull << 30); },
         .addressSpaceLimit = 2000000u << 10, .seconds = 1},
        {.name = "TypeMapOneByteOverTheLimit", .map = std::nullopt, .out = "", .err = loadFailure("0", tooLarge),
         .package = Kept, .typedefs = Kept, .prepare = [] { writeSparseFile(typeMapPath, point, (256u << 20) + 1); },
         .seconds = 1},
        {.name = "HundredThousandNodes", .map = repeated("<a/>", 100000), .seconds = 1},
        notLoaded("NodesBeyondTheBudgetInsideDeepNesting",
                  repeated("<a>", 31) + repeated("x<b/>", 50000) + repeated("</a>", 31), "1", nodes),
        notLoaded("ChildrenOfATypeBeyondTheBudget",
                  point + "<Type name='T' namespace='n'>" + repeated("\n<c/>", 100001) + "</Type>", "100003", nodes),
    };
    // clang-format on

    // Both outputs of the type maps under tests/golden/, byte for byte: each directory holds a map,
    // perhaps a banner, and the two files the tool must write from them; the one without a map
    // holds those of the shipped type map, which the tool built on this tree reads.
    for (const fs::path& golden : fs::directory_iterator(GOLDEN_DIR))
    {
        const auto text = [](const fs::path& path) {
            return fs::exists(path) ? std::optional(readFile(path)) : std::nullopt;
        };
        if (fs::is_directory(golden))
            table.push_back({.name = std::regex_replace("Golden_" + golden.filename().string(), std::regex("-"), ""),
                             .tool = text(golden / "LuaContainerPrimitives.xml") ? TOOL_UNDER_TEST : SHIPPED_TOOL,
                             .map = text(golden / "LuaContainerPrimitives.xml"),
                             .banner = text(golden / "zym_copyright.txt"),
                             .check = [golden] {
                                 EXPECT_EQ(readFile(golden / "generated_containers.pkg"), readFile(work + "/out.pkg"));
                                 EXPECT_EQ(readFile(golden / "generated_container_typedefs.h"),
                                           readFile(work + "/out.h"));
                             }});
    }

    // Only lower-case true and false, after white space, are read as a bool: the typedef step fails
    // on the rest, after the package step has written its file.
    for (const std::string spelling : {"True", "TRUE", "1", "0", "", " ", "tru"})
    {
        const std::string element = R"(<Type name="Bad" namespace="geo" isPOD=")" + spelling + "\" />";
        table.push_back({.name = "IsPOD" + (spelling == " "    ? "Blank"
                                            : spelling.empty() ? "Empty"
                                                               : spelling),
                         .map = point + element,
                         .status = 1,
                         .out = successLines("out.pkg", ""),
                         .err = attributeReport("Unable to parse attribute isPOD", 2, element),
                         .typedefs = Kept,
                         .contains = {{"out.pkg", "class BadValue"}}});
    }
    return table;
}

class ToolRuns : public testing::TestWithParam<Case>
{};

} // namespace

TEST_P(ToolRuns, EndInOrderAndSpareWhatTheyCannotReplace)
{
    const Case& c = GetParam();
    fs::remove_all(root);
    fs::remove_all(work);
    fs::create_directories(root);
    writeFile(work + "/out.pkg", "old package");
    writeFile(work + "/out.h", "old header");
    if (c.map)
        writeFile(typeMapPath, *c.map);
    if (c.banner)
        writeFile(bannerPath, *c.banner);
    c.prepare();

#ifdef ZYM_SANITIZED
    const ToolRun run = runTool(c.tool, c.arguments, c.output, c.fileSizeLimit, 0);
#else
    const ToolRun run = runTool(c.tool, c.arguments, c.output, c.fileSizeLimit, c.addressSpaceLimit);
#endif
    EXPECT_EQ(0, run.signal);
    EXPECT_EQ(c.status, run.exitStatus);
    EXPECT_EQ(c.out, run.out);
    EXPECT_TRUE(std::regex_match(run.err, std::regex(c.err))) << run.err.substr(0, 2000);
    EXPECT_EQ(c.package == Kept, readFile(work + "/out.pkg") == "old package");
    EXPECT_EQ(c.typedefs == Kept, readFile(work + "/out.h") == "old header");
    for (const Contains& expected : c.contains)
        EXPECT_EQ(expected.present, readFile(work + "/" + expected.file).find(expected.text) != std::string::npos)
            << expected.text;
    c.check();
    EXPECT_TRUE(!c.map || *c.map == readFile(typeMapPath)); // the sources stay as they were
    EXPECT_TRUE(!c.banner || *c.banner == readFile(bannerPath));
#ifndef ZYM_SANITIZED
    EXPECT_LT(run.seconds, c.seconds);
    const auto size = [](const std::string& path) { return fs::is_regular_file(path) ? fs::file_size(path) : 0; };
    const std::uintmax_t bytes = size(typeMapPath) + size(work + "/out.pkg") + size(work + "/out.h");
    EXPECT_LT(static_cast<std::uintmax_t>(run.peakMemoryKiB) * 1024, 3 * bytes + (64u << 20));
#else
    EXPECT_LT(run.seconds, 10 * c.seconds);
#endif
    fs::remove_all(root); // the next test that shares the root must not find a directory in its place
}

INSTANTIATE_TEST_SUITE_P(Table, ToolRuns, testing::ValuesIn(cases()),
                         [](const testing::TestParamInfo<Case>& param) { return param.param.name; });
