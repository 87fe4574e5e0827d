// Runs a program with its standard output in a file and prints, on its own standard output,
// "<wall ns> <user CPU ns> <system CPU ns> <peak RSS KiB> <wait status>".
//
//   Launch <stdout file> <program> [arguments...]
//
// A small process of its own, because a child's peak RSS starts from the resident size of the
// process that forked it: forked from the Python driver, the smallest programs would all weigh
// as much as Python.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

int main(int argc, char** argv)
{
    const int output = argc < 3 ? -1 : ::open(argv[1], O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (output < 0)
    {
        std::fprintf(stderr, "usage: Launch <stdout file> <program> [arguments...]\n");
        return 2;
    }
    timespec start{}, end{};
    ::clock_gettime(CLOCK_MONOTONIC, &start);
    const pid_t child = ::fork();
    if (child == 0)
    {
        ::dup2(output, 1);
        ::execv(argv[2], argv + 2);
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    ::clock_gettime(CLOCK_MONOTONIC, &end);
    const auto ns = [](long long seconds, long long nanoseconds) { return seconds * 1000000000LL + nanoseconds; };
    std::printf("%lld %lld %lld %ld %d\n", ns(end.tv_sec - start.tv_sec, end.tv_nsec - start.tv_nsec),
                ns(usage.ru_utime.tv_sec, usage.ru_utime.tv_usec * 1000LL),
                ns(usage.ru_stime.tv_sec, usage.ru_stime.tv_usec * 1000LL), usage.ru_maxrss, status);
    return child < 0 ? 2 : 0;
}
