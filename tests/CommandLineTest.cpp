// The tool as a build sees it: arguments in; exit status, standard streams and files out.

#include "ToolRunner.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{

const std::string declarationsLine = "Updated lua container declarations in file ";
const std::string typedefsLine = "Updated lua container typedefs in file ";
const std::string equalsRule(78, '=');

std::string lines(const std::vector<std::string>& rows)
{
    std::string text;
    for (const std::string& row : rows)
        text += row + "\n";
    return text;
}

std::string typedefHead(const std::string& banner)
{
    return banner + lines({"", "#ifndef ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H", "#define ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H",
                           "", "#include <zym/Vec2.h>", "#include <zym/Vec3.h>", "#include <zym/Vec4.h>",
                           "#include <zym/Matrix3x3.h>", "#include <zym/AffineMatrix4x4.h>", "#include <zym/Quat.h>",
                           "#include <zym/Uuid.h>", ""});
}

const std::string typedefTail = lines({"", "#endif //ZYMLUA_GENERATED_CONTAINER_TYPEDEFS_H"});

std::string includeRows(const std::vector<std::string>& includes)
{
    std::string rows;
    for (const std::string& include : includes)
        rows += "$#include <" + include + ">\n";
    return rows + lines({"$#include <zymLua/generated_container_typedefs.h>", "$ifile \"zym/Math.tolua\"", ""});
}

std::string typeElement(const std::string& attributes)
{
    return "<Type " + attributes + " />\n";
}

class CommandLine : public testing::Test
{
protected:
    void SetUp() override
    {
        fs::remove_all(root);
        fs::remove_all(work);
        fs::create_directories(root);
        fs::create_directories(work);
    }

    void writeTypeMap(const std::string& xml, const std::string& directory = "") const
    {
        writeFile(root + directory + "/LuaContainerPrimitives.xml", xml);
    }
    void writeBanner(const std::string& banner) const { writeFile(root + "/tools/Generator/zym_copyright.txt", banner); }

    ToolRun run(const std::vector<std::string>& arguments) const { return runTool(TOOL_UNDER_TEST, arguments, work); }
    ToolRun runToBothFiles() const { return run({"out.pkg", "out.h"}); }

    std::string package() const { return readFile(work + "/out.pkg"); }
    std::string typedefs() const { return readFile(work + "/out.h"); }

    static void expectCleanRun(const ToolRun& run)
    {
        EXPECT_EQ(0, run.exitStatus);
        EXPECT_EQ(declarationsLine + "out.pkg\n" + typedefsLine + "out.h\n", run.out);
        EXPECT_EQ("", run.err);
    }

    // The report of a bad attribute: its own source position, then the text a user reads.
    void expectAttributeReport(const ToolRun& run, const std::string& problem, int row, const std::string& element) const
    {
        EXPECT_EQ(1, run.exitStatus);
        EXPECT_EQ(0, run.signal);
        const std::size_t cut = run.err.find("] XML error: ");
        ASSERT_NE(std::string::npos, cut) << run.err;
        EXPECT_TRUE(std::regex_match(run.err.substr(0, cut), std::regex(R"(\[/.*/include/zym/Xml\.h:[0-9]+)")))
            << run.err;
        EXPECT_EQ("] XML error: " + problem + ". Error at row " + std::to_string(row) + "\n" + "File: " + root +
                      "/LuaContainerPrimitives.xml\n" + equalsRule + "\n" + element + "\n" + equalsRule + "\n\n",
                  run.err.substr(cut));
    }

    const std::string root = TEST_SOURCE_ROOT;
    const std::string work = TEST_SOURCE_ROOT "-work";
};

} // namespace

TEST_F(CommandLine, FewerThanTwoArgumentsGiveTheUsageLineStatus255AndNoFile)
{
    writeTypeMap(typeElement(R"(name="Point" namespace="geo")"));
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{}, std::vector<std::string>{"out.pkg"}})
    {
        const ToolRun result = run(arguments);
        EXPECT_EQ(255, result.exitStatus);
        EXPECT_EQ("", result.out);
        EXPECT_EQ("Usage: " TOOL_UNDER_TEST "<target file path> <typedef file path>\n", result.err);
        EXPECT_TRUE(fs::is_empty(work));
    }
}

TEST_F(CommandLine, IgnoresSurplusArgumentsAndRewritesBothFilesOnEveryRun)
{
    writeTypeMap(typeElement(R"(name="Point" namespace="geo")"));
    expectCleanRun(run({"out.pkg", "out.h", "surplus", "--option"}));
    const std::string firstPackage = package();
    const std::string firstTypedefs = typedefs();
    EXPECT_FALSE(fileExists(work + "/surplus"));

    writeFile(work + "/out.pkg", "stale");
    writeFile(work + "/out.h", "stale");
    expectCleanRun(runToBothFiles());
    EXPECT_EQ(firstPackage, package());
    EXPECT_EQ(firstTypedefs, typedefs());
}

TEST_F(CommandLine, AMissingAttributeIsReportedWithItsRowAndQuotedNameAndTouchesNoTarget)
{
    std::string xml = "<?xml version=\"1.0\"?>\n";
    for (int row = 2; row < 12; ++row)
        xml += typeElement("name=\"T" + std::to_string(row) + "\" namespace=\"geo\"");
    xml += typeElement(R"(name="Lonely")");
    writeTypeMap(xml);
    writeFile(work + "/out.pkg", "old package");

    const ToolRun result = runToBothFiles();
    expectAttributeReport(result, "Could not locate attribute 'namespace'", 12, R"(<Type name="Lonely" />)");
    EXPECT_EQ("", result.out);
    EXPECT_EQ("old package", package());
    EXPECT_FALSE(fileExists(work + "/out.h"));

    writeTypeMap(typeElement(R"(isPOD="false")"));
    expectAttributeReport(runToBothFiles(), "Could not locate attribute 'name'", 1, R"(<Type isPOD="false" />)");
}

TEST_F(CommandLine, ABadIsPODFailsOnlyTheTypedefStepAndIsReportedWithoutQuotes)
{
    for (const std::string spelling : {"True", "TRUE", "1", "0", "", " ", "tru"})
    {
        writeTypeMap(typeElement(R"(name="Point" namespace="geo")") + typeElement(R"(name="Bad" namespace="geo" isPOD=")" + spelling + "\""));
        writeFile(work + "/out.h", "old header");
        const ToolRun result = runToBothFiles();
        expectAttributeReport(result, "Unable to parse attribute isPOD", 2,
                              R"(<Type name="Bad" namespace="geo" isPOD=")" + spelling + "\" />");
        EXPECT_EQ(declarationsLine + "out.pkg\n", result.out);
        EXPECT_NE(std::string::npos, package().find("class BadValue"));
        EXPECT_EQ("old header", typedefs());
    }
}

TEST_F(CommandLine, IsPODIsTrueWhenAbsentOrReadAsALowerCaseWordAfterWhiteSpace)
{
    writeTypeMap(typeElement(R"(name="A" namespace="n")") + typeElement(R"(name="B" namespace="n" isPOD="true")") +
                 typeElement(R"(name="C" namespace="n" isPOD="  true")") +
                 typeElement(R"(name="D" namespace="n" isPOD="true and more")") +
                 typeElement(R"(name="E" namespace="n" isPOD="false")") +
                 typeElement(R"(name="F" namespace="n" isPOD="falsetto")"));
    expectCleanRun(runToBothFiles());
    for (const char* pod : {"A", "B", "C", "D"})
        EXPECT_NE(std::string::npos, typedefs().find(std::string("typedef zym::VectorPOD< n::") + pod + " > "))
            << pod;
    for (const char* plain : {"E", "F"})
        EXPECT_NE(std::string::npos, typedefs().find(std::string("typedef zym::Vector< n::") + plain + " > ")) << plain;
}

TEST_F(CommandLine, TypedefHeaderOfOneNestedTypeWithAndWithoutPOD)
{
    const std::string block = lines({"namespace geo",
                                     "{",
                                     "  namespace shape",
                                     "  {",
                                     "    typedef zym::VectorPOD< geo::shape::Point > PointVector;",
                                     "    typedef zymData::Array< geo::shape::Point > PointArray;",
                                     "    typedef zymData::BufferT< geo::shape::Point > PointBuffer;",
                                     "    typedef zymData::ValueT< geo::shape::Point > PointValue;",
                                     "  }",
                                     "}",
                                     ""});
    writeTypeMap(typeElement(R"(name="Point" namespace="geo::shape")"));
    expectCleanRun(runToBothFiles());
    EXPECT_EQ(typedefHead("") + block + typedefTail, typedefs());

    writeTypeMap(typeElement(R"(name="Point" namespace="geo::shape" isPOD="false")"));
    expectCleanRun(runToBothFiles());
    std::string plainBlock = block;
    plainBlock.replace(plainBlock.find("VectorPOD<"), 10, "Vector<");
    EXPECT_EQ(typedefHead("") + plainBlock + typedefTail, typedefs());
}

TEST_F(CommandLine, OnlyTopLevelTypeElementsCountAndAnEmptyMapGivesTheFrameAlone)
{
    writeTypeMap("<?xml version=\"1.0\"?>\n<!-- types -->\n<Other name=\"X\" namespace=\"x\" />\n"
                 "<Types><Type name=\"Inner\" namespace=\"x\" /></Types>\n");
    writeBanner("/* banner */\n");
    expectCleanRun(runToBothFiles());
    EXPECT_EQ(typedefHead("/* banner */\n") + typedefTail, typedefs());
    EXPECT_EQ("/* banner */\n" +
                  includeRows({"zymData/Array.h", "zymData/Buffer.h", "zym/HashSet.h", "zymData/Value.h", "zym/Vector.h"}),
              package());
}

TEST_F(CommandLine, TheBannerIsCopiedUpToItsFirstNulByteWithNothingAdded)
{
    writeTypeMap(typeElement(R"(name="Point" namespace="geo")"));
    writeBanner(std::string("/* kept */\n\0/* dropped */\n", 26));
    expectCleanRun(runToBothFiles());
    EXPECT_EQ(0u, package().find("/* kept */\n$#include <"));
    EXPECT_EQ(0u, typedefs().find("/* kept */\n\n#ifndef "));

    writeBanner("// no newline");
    expectCleanRun(runToBothFiles());
    EXPECT_EQ(0u, package().find("// no newline$#include <"));
    EXPECT_EQ(0u, typedefs().find("// no newline\n#ifndef "));

    fs::remove(root + "/tools/Generator/zym_copyright.txt");
    expectCleanRun(runToBothFiles());
    EXPECT_EQ(0u, package().find("$#include <"));
    EXPECT_EQ(0u, typedefs().find("\n#ifndef "));
}

TEST_F(CommandLine, TheTypeMapAtTheRootComesBeforeTheOneInData)
{
    writeTypeMap(typeElement(R"(name="InData" namespace="geo")"), "/data");
    expectCleanRun(runToBothFiles());
    EXPECT_NE(std::string::npos, typedefs().find("InDataVector;"));

    writeTypeMap(typeElement(R"(name="AtRoot" namespace="geo")"));
    expectCleanRun(runToBothFiles());
    EXPECT_NE(std::string::npos, typedefs().find("AtRootVector;"));
    EXPECT_EQ(std::string::npos, typedefs().find("InDataVector;"));
}

TEST_F(CommandLine, IncludeRowsFollowTheSetsSlotOrder)
{
    const auto includeBlock = [this](const std::string& xml) {
        writeTypeMap(xml);
        expectCleanRun(runToBothFiles());
        const std::string text = package();
        return text.substr(0, text.find("$#include <zymLua/"));
    };
    const auto rows = [](const std::vector<std::string>& includes) {
        std::string text;
        for (const std::string& include : includes)
            text += "$#include <" + include + ">\n";
        return text;
    };

    EXPECT_EQ(rows({"zymData/Array.h", "zymData/Buffer.h", "zym/HashSet.h", "zymData/Value.h", "zym/Vector.h"}),
              includeBlock(typeElement(R"(name="A" namespace="n")")));
    EXPECT_EQ(rows({"zymData/Array.h", "zym/Vector.h", "zymData/Value.h", "zym/HashSet.h", "zymData/Buffer.h"}),
              includeBlock(typeElement(R"(name="A" namespace="n" include="zym/Vector.h")")));

    const std::string vec3 = typeElement(R"(name="Vec3" namespace="zym" include="zym/Vec3.h")");
    const std::string quat = typeElement(R"(name="Quat" namespace="zym" include="zym/Quat.h")");
    const std::string vec3First = includeBlock(vec3 + quat);
    const std::string quatFirst = includeBlock(quat + vec3);
    EXPECT_NE(std::string::npos, vec3First.find("$#include <zym/Vec3.h>\n$#include <zym/Quat.h>\n"));
    EXPECT_NE(std::string::npos, quatFirst.find("$#include <zym/Quat.h>\n$#include <zym/Vec3.h>\n"));

    EXPECT_NE(std::string::npos, includeBlock(typeElement(R"(name="A" namespace="n" include="")")).find("$#include <>\n"));
}

TEST(ShippedTypeMap, GivesTheGoldenPackageFileAndTypedefHeader)
{
    const std::string work = TEST_SOURCE_ROOT "-shipped";
    fs::remove_all(work);
    fs::create_directories(work);
    const ToolRun result = runTool(SHIPPED_TOOL, {"package.pkg", "typedefs.h"}, work);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.err);
    EXPECT_EQ(readFile(GOLDEN_DIR "/LuaContainers.pkg"), readFile(work + "/package.pkg"));
    EXPECT_EQ(readFile(GOLDEN_DIR "/generated_container_typedefs.h"), readFile(work + "/typedefs.h"));
}
