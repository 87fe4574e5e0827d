#ifndef ZYMIO_ENVIRONMENT_H
#define ZYMIO_ENVIRONMENT_H

#include <zym/String.h>

#include <vector>

namespace zymIO
{

// An ordered list of directories in which files are looked up.
class FilePathContainer
{
public:
    void pushbackPath(const String& directory);

    // The path of `fileName` in the first directory, in append order, that holds a regular
    // file of that name (links followed); the empty string when none does.
    String find(const String& fileName) const;

private:
    std::vector<String> directories;
};

// The one environment object of the process, with a search list per kind of file.
class Environment
{
public:
    enum Type { DataFilePath = 0, ConfigFilePath = 1, ComponentFilePath = 2, TypeCount };

    static Environment& instance();

    FilePathContainer& getFilePath(Type type);

    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    Environment() = default;

    FilePathContainer filePaths[TypeCount];
};

} // namespace zymIO

#endif // ZYMIO_ENVIRONMENT_H
