#include <zym/Core.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace zym
{

namespace
{

bool isPrime(int n)
{
    if (n < 2)
        return false;
    for (int divisor = 2; divisor <= n / divisor; ++divisor)
        if (n % divisor == 0)
            return false;
    return true;
}

std::vector<LoggedError>& loggedErrors()
{
    static std::vector<LoggedError> errors;
    return errors;
}

} // namespace

int nextPrime(int n)
{
    constexpr int largestPrime = 2147483629;
    if (n < 1 || n > largestPrime)
    {
        std::fprintf(stderr, "zymCore: nextPrime(%d): no 32-bit prime to give\n", n);
        zym::abort();
    }
    while (!isPrime(n))
        ++n;
    return n;
}

std::string buildErrorString(const char* format, std::string secondFormat, ...)
{
    const std::string combined = format + secondFormat;
    va_list arguments;
    va_start(arguments, secondFormat);
    char* text = nullptr;
    const int length = ::vasprintf(&text, combined.c_str(), arguments);
    va_end(arguments);
    if (length < 0)
        return combined;
    std::string result(text, static_cast<std::size_t>(length));
    std::free(text);
    return result;
}

void log_throw(const std::string& description, const char* what)
{
    loggedErrors().push_back(LoggedError{description, what});
}

const std::vector<LoggedError>& errorLog() { return loggedErrors(); }

void abort()
{
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace zym
