#include <zymIO/Environment.h>

#include <sys/stat.h>

namespace zymIO
{

void FilePathContainer::pushbackPath(const String& directory) { directories.push_back(directory); }

String FilePathContainer::find(const String& fileName) const
{
    // Only a regular file counts: a directory of that name would seek to an absurd size
    // in the readers, and a device would never end.
    for (const String& directory : directories)
    {
        String candidate = directory + "/" + fileName;
        struct stat status;
        if (::stat(candidate.c_str(), &status) == 0 && S_ISREG(status.st_mode))
            return candidate;
    }
    return String();
}

Environment& Environment::instance()
{
    static Environment environment;
    return environment;
}

FilePathContainer& Environment::getFilePath(Type type) { return filePaths[type]; }

} // namespace zymIO
