// The core library's stand-in where the tool leans on it: primes for the include set, the stops
// of format and of the allocator when memory runs out, the log of a raised attribute error.

#include <zym/ByteAllocator.h>
#include <zym/Core.h>
#include <zym/String.h>
#include <zym/Xml.h>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <vector>

TEST(CoreDeathTest, StopsInOrderWhereItHasNothingToGive)
{
    EXPECT_EQ((std::vector<int>{2, 2147483629}), (std::vector<int>{zym::nextPrime(1), zym::nextPrime(2147483629)}));
    EXPECT_EXIT(zym::nextPrime(2147483630), testing::ExitedWithCode(1), "nextPrime\\(2147483630\\): no 32-bit prime");
    EXPECT_EXIT(zym::nextPrime(0), testing::ExitedWithCode(1), "nextPrime\\(0\\)");
    const std::string longRoot(100000, 'r');
    EXPECT_EQ(longRoot + "/data" + String::format("%s", ""), String::format("%s/data", longRoot.c_str()));
#ifndef ZYM_SANITIZED
    const auto formatBeyondAMemoryLimit = [] {
        const rlimit limit = {256u << 20, 256u << 20};
        ::setrlimit(RLIMIT_AS, &limit);
        String::format("%400000000s", "");
    };
    EXPECT_EXIT(formatBeyondAMemoryLimit(), testing::ExitedWithCode(1),
                "^\\[/.*/include/zym/String\\.h:[0-9]+\\] zymVerify failed: `ret >= 0', "
                "Could not allocate memory for formatted string: '%400000000s'\n$");
    EXPECT_EXIT(zym::ByteAllocator().allocateBytes(std::size_t(1) << 62, 16), testing::ExitedWithCode(1),
                "^zymCore: out of memory: could not allocate 4611686018427387904 bytes\n$");
#endif
}

TEST(ParseAttribute, GivesTheCoreLibraryWhatItRaises)
{
    TiXmlDocument map("map.xml");
    map.Parse("<Type />");
    EXPECT_THROW(zym::parseAttribute<bool>(map.FirstChildElement(), "isPOD"), zym::ReportedError);
    EXPECT_NE(std::string::npos, zym::errorLog().at(0).what.find(
                                     "XML error: Could not locate attribute 'isPOD'. Error at row 1\nFile: map.xml"));
}
