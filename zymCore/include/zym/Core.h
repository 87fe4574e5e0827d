#ifndef ZYM_CORE_H
#define ZYM_CORE_H

#include <string>
#include <vector>

namespace zym
{

// The smallest prime not below n, for n from 1 up to the largest 32-bit prime.
int nextPrime(int n);

// Expands both printf-style formats as one text, the first one first; the arguments of the
// first come ahead of those of the second.
std::string buildErrorString(const char* format, std::string secondFormat, ...);

struct LoggedError
{
    std::string description;
    std::string what;
};

// Records an exception that its caller is about to throw. Writes nothing to the standard streams.
void log_throw(const std::string& description, const char* what);

// What log_throw has recorded so far, oldest first.
const std::vector<LoggedError>& errorLog();

// Flushes the standard streams and ends the process with a non-zero status, without a core dump.
[[noreturn]] void abort();

} // namespace zym

#endif // ZYM_CORE_H
