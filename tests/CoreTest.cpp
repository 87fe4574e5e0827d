#include "ToolRunner.h"

#include <zym/ByteAllocator.h>
#include <zym/Core.h>
#include <zym/PyString.h>
#include <zymIO/Environment.h>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

TEST(FilePathContainer, FindsTheFirstDirectoryHoldingARegularFileAndNothingElse)
{
    const fs::path root = fs::temp_directory_path() / "zym-core-find";
    fs::remove_all(root);
    writeFile((root / "second/tools/banner.txt").string(), "second");
    writeFile((root / "third/tools/banner.txt").string(), "third");
    fs::create_directories(root / "first/tools/banner.txt");  // a directory of that name does not count
    fs::create_directories(root / "link");
    fs::create_symlink(root / "third/tools", root / "link/tools");

    zymIO::FilePathContainer paths;
    paths.pushbackPath((root / "first").string());
    paths.pushbackPath((root / "second").string());
    paths.pushbackPath((root / "third").string());
    EXPECT_EQ((root / "second/tools/banner.txt").string(), paths.find("tools/banner.txt"));
    EXPECT_EQ("", paths.find("tools/missing.txt"));

    zymIO::FilePathContainer throughLink;
    throughLink.pushbackPath((root / "link").string());
    EXPECT_EQ((root / "link/tools/banner.txt").string(), throughLink.find("tools/banner.txt"));

    zymIO::FilePathContainer device;
    device.pushbackPath("/dev");
    EXPECT_EQ("", device.find("null"));
    fs::remove_all(root);
}

TEST(Environment, KeepsOneListPerTypeAcrossCalls)
{
    zymIO::Environment& environment = zymIO::Environment::instance();
    EXPECT_EQ(&environment, &zymIO::Environment::instance());
    EXPECT_EQ(&environment.getFilePath(zymIO::Environment::ComponentFilePath),
              &environment.getFilePath(zymIO::Environment::ComponentFilePath));
    EXPECT_NE(&environment.getFilePath(zymIO::Environment::DataFilePath),
              &environment.getFilePath(zymIO::Environment::ComponentFilePath));
}

TEST(NextPrime, GivesTheSmallestPrimeNotBelowItsArgument)
{
    const std::vector<std::pair<int, int>> cases = {
        {1, 2}, {2, 2}, {6, 7}, {7, 7}, {16, 17}, {36, 37}, {78, 79}, {90, 97}, {2147483629, 2147483629}};
    for (const auto& [argument, prime] : cases)
        EXPECT_EQ(prime, zym::nextPrime(argument)) << argument;
}

TEST(NextPrime, StopsInOrderWhenNoPrimeFits)
{
    EXPECT_EXIT(zym::nextPrime(2147483630), testing::ExitedWithCode(1), "no 32-bit prime");
    EXPECT_EXIT(zym::nextPrime(0), testing::ExitedWithCode(1), "nextPrime\\(0\\)");
}

TEST(PyString, CutsAtTheSeparatorLikeItsPythonNamesake)
{
    EXPECT_EQ(5, pystring::rfind("geo::shape::Point", "::", 0, 2147483647) - 5);
    EXPECT_GT(0, pystring::rfind("Point", "::", 0, 2147483647));

    const std::vector<std::pair<String, std::vector<std::string>>> cases = {
        {"geo::shape", {"geo", "shape"}}, {"", {""}}, {"::a", {"", "a"}}, {"a::::b", {"a", "", "b"}}};
    for (const auto& [text, expected] : cases)
    {
        Vector<String> pieces;
        pystring::split(text, pieces, "::", -1);
        EXPECT_EQ(expected, std::vector<std::string>(pieces.begin(), pieces.end())) << text;
    }
}

TEST(ErrorReporting, BuildsOneTextFromBothFormatsAndLogsWithoutWriting)
{
    EXPECT_EQ("[a.h:12 (f)]second 7", zym::buildErrorString("[%s:%u (%s)]", "second %d", "a.h", 12u, "f", 7));

    const std::size_t before = zym::errorLog().size();
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    zym::log_throw("[a.h:12 (f)]", "what went wrong");
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    ASSERT_EQ(before + 1, zym::errorLog().size());
    EXPECT_EQ("[a.h:12 (f)]", zym::errorLog().back().description);
    EXPECT_EQ("what went wrong", zym::errorLog().back().what);
}

TEST(Abort, EndsTheProcessWithAFailureStatusAfterFlushing)
{
    EXPECT_EXIT(
        {
            std::cout << "pending";
            zym::abort();
        },
        testing::ExitedWithCode(1), "");
}

namespace
{

[[maybe_unused]] void formatBeyondAMemoryLimit()
{
    rlimit limit = {};
    limit.rlim_cur = limit.rlim_max = 256u << 20;
    ::setrlimit(RLIMIT_AS, &limit);
    String::format("%400000000s", "");
}

} // namespace

TEST(StringFormat, HasNoLengthLimitAndEndsInOrderWhenItCannotAllocate)
{
    const std::string longRoot(100000, 'r');
    EXPECT_EQ(longRoot + "/data", String::format("%s/data", longRoot.c_str()));
    EXPECT_EQ("", String::format("%s", ""));

#ifndef ZYM_SANITIZED
    EXPECT_EXIT(formatBeyondAMemoryLimit(), testing::ExitedWithCode(1),
        "^\\[/.*/include/zym/String\\.h:[0-9]+\\] zymVerify failed: `ret >= 0', "
        "Could not allocate memory for formatted string: '%400000000s'\n$");
#endif
}

TEST(ByteAllocator, StopsWithAMessageWhenMemoryRunsOut)
{
#ifndef ZYM_SANITIZED
    EXPECT_EXIT(zym::ByteAllocator().allocateBytes(std::size_t(1) << 62, 16), testing::ExitedWithCode(1),
                "^zymCore: out of memory: could not allocate 4611686018427387904 bytes\n$");
#endif
}
