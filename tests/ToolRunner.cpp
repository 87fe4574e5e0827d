#include "ToolRunner.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace
{

int temporaryFile()
{
    char name[] = "/tmp/toolrun-XXXXXX";
    const int descriptor = ::mkstemp(name);
    if (descriptor < 0)
        throw std::runtime_error("mkstemp failed");
    ::unlink(name);
    return descriptor;
}

std::string readAll(int descriptor)
{
    std::string content;
    ::lseek(descriptor, 0, SEEK_SET);
    char buffer[65536];
    for (ssize_t count; (count = ::read(descriptor, buffer, sizeof buffer)) > 0;)
        content.append(buffer, static_cast<std::size_t>(count));
    ::close(descriptor);
    return content;
}

// The descriptor the child's standard output goes to, or -1 for none.
int outputDescriptor(Output output, int file)
{
    if (output == Output::File)
        return file;
    if (output == Output::Closed)
        return -1;
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error("pipe failed");
    ::close(ends[0]);
    return ends[1];
}

} // namespace

ToolRun runTool(const std::string& program, const std::vector<std::string>& arguments, const RunOptions& options)
{
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    const int out = temporaryFile();
    const int err = temporaryFile();
    const int stdoutDescriptor = outputDescriptor(options.output, out);
    const pid_t child = ::fork();
    if (child == 0)
    {
        const int input = ::open("/dev/null", O_RDONLY);
        const rlimit fileSize = {options.fileSizeLimit, options.fileSizeLimit};
        if (input < 0 || ::dup2(input, 0) < 0 || ::dup2(err, 2) < 0 || ::chdir(options.workingDirectory.c_str()) != 0 ||
            (options.fileSizeLimit != 0 && ::setrlimit(RLIMIT_FSIZE, &fileSize) != 0) ||
            (stdoutDescriptor >= 0 ? ::dup2(stdoutDescriptor, 1) < 0 : ::close(1) != 0))
            ::_exit(126);
        for (int descriptor = 3; descriptor < 64; ++descriptor)
            ::close(descriptor);
        ::execv(program.c_str(), argv.data());
        ::_exit(127);
    }
    if (stdoutDescriptor >= 0 && stdoutDescriptor != out)
        ::close(stdoutDescriptor);

    ToolRun run;
    int status = 0;
    struct rusage usage = {};
    ::wait4(child, &status, 0, &usage);
    run.peakMemoryKiB = usage.ru_maxrss;
    if (WIFEXITED(status))
        run.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        run.signal = WTERMSIG(status);
    run.out = readAll(out);
    run.err = readAll(err);
    return run;
}

std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void writeFile(const std::string& path, const std::string& content)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}
