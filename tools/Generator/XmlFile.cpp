#include "XmlFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>

XmlText::XmlText(std::size_t length) : block(new char[length + 1 + padding]) {}

XmlText::XmlText(std::string_view bytes) : XmlText(bytes.size())
{
    std::memcpy(block.get(), bytes.data(), bytes.size());
    normalize(bytes.size());
}

std::optional<XmlText> XmlText::read(int descriptor, std::size_t size)
{
    std::optional<XmlText> text(XmlText{size});
    for (std::size_t done = 0; done < size;)
    {
        const ssize_t count = ::read(descriptor, text->block.get() + done, size - done);
        if (count <= 0)
            return std::nullopt;
        done += static_cast<std::size_t>(count);
    }
    text->normalize(size);
    return text;
}

void XmlText::normalize(std::size_t length)
{
    char* const start = block.get();
    start[length] = '\0';
    char* write = start + std::strlen(start);
    if (char* const carriageReturn =
            static_cast<char*>(std::memchr(start, '\r', static_cast<std::size_t>(write - start))))
    {
        write = carriageReturn;
        for (const char* read = carriageReturn; *read != '\0';)
        {
            if (*read == '\r')
            {
                *write++ = '\n';
                if (*++read == '\n')
                    ++read;
            }
            else
                *write++ = *read++;
        }
    }
    std::memset(write, 0, static_cast<std::size_t>(start + length + 1 + padding - write));
}

std::optional<XmlFailure> loadXmlFile(TiXmlDocument& document, const XmlLimits& limits)
{
    // The size is taken from the descriptor that is read, and no more than that is read: a file
    // that grows meanwhile is read as far as it was.
    int errorId = TiXmlBase::TIXML_ERROR_OPENING_FILE;
    std::uint64_t size = 0;
    std::optional<XmlText> text;
    const int file = ::open(document.Value(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status = {};
    if (file >= 0 && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode))
    {
        size = static_cast<std::uint64_t>(status.st_size);
        if (size == 0)
            errorId = TiXmlBase::TIXML_ERROR_DOCUMENT_EMPTY;
        else if (size <= limits.maxBytes)
            text = XmlText::read(file, static_cast<std::size_t>(size));
    }
    if (file >= 0)
        ::close(file);
    if (size > limits.maxBytes)
        return XmlFailure{0, "File larger than " + std::to_string(limits.maxBytes >> 20) + " MiB."};

    if (!text)
        document.SetError(errorId, nullptr, nullptr, TIXML_ENCODING_UNKNOWN);
    else if (std::optional<XmlFailure> breach = findXmlLimitBreach(text->c_str(), limits))
        return breach;
    else
        document.Parse(text->c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
    if (!document.Error())
        return std::nullopt;
    return XmlFailure{static_cast<std::uint64_t>(document.ErrorRow()), document.ErrorDesc()};
}
