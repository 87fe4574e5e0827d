// Runs a program with the standard streams it is given, and writes
// "<wall ns> <user CPU ns> <system CPU ns> <peak RSS KiB> <wait status>" into the report file.
//
//   Launch <report file> <program> [arguments...]
//
// A small process of its own, because a child's peak RSS starts from the resident size of the
// process that forked it: forked from a Python driver, the smallest programs would all weigh as
// much as Python. The benchmarks and the command-line tests measure every run through it.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

int main(int argc, char** argv)
{
    std::FILE* const report =
        argc < 3 ? nullptr : std::fopen(argv[1], "we"); // not inherited: a closed stream stays closed
    if (report == nullptr)
    {
        std::fprintf(stderr, "usage: Launch <report file> <program> [arguments...]\n");
        return 2;
    }
    timespec start{}, end{};
    ::clock_gettime(CLOCK_MONOTONIC, &start);
    const pid_t child = ::fork();
    if (child == 0)
    {
        ::execv(argv[2], argv + 2);
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    ::clock_gettime(CLOCK_MONOTONIC, &end);
    const auto ns = [](long long seconds, long long nanoseconds) { return seconds * 1000000000LL + nanoseconds; };
    std::fprintf(report, "%lld %lld %lld %ld %d\n", ns(end.tv_sec - start.tv_sec, end.tv_nsec - start.tv_nsec),
                 ns(usage.ru_utime.tv_sec, usage.ru_utime.tv_usec * 1000LL),
                 ns(usage.ru_stime.tv_sec, usage.ru_stime.tv_usec * 1000LL), usage.ru_maxrss, status);
    return std::fclose(report) == 0 && child > 0 ? 0 : 2;
}
