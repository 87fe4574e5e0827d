#include "XmlFile.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <string>

XmlText::XmlText(std::size_t length) : block(new char[length + 1 + padding]) {}

XmlText::XmlText(std::string_view bytes) : XmlText(bytes.size())
{
    std::memcpy(block.get(), bytes.data(), bytes.size());
    normalize(bytes.size());
}

std::optional<XmlText> XmlText::read(const char* path, int& errorId)
{
    errorId = TiXmlBase::TIXML_ERROR_OPENING_FILE;
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr)
        return std::nullopt;
    std::fseek(file, 0, SEEK_END);
    const long length = std::ftell(file);
    std::fseek(file, 0, SEEK_SET);

    std::optional<XmlText> text;
    if (length <= 0)
        errorId = TiXmlBase::TIXML_ERROR_DOCUMENT_EMPTY;
    else
    {
        const std::size_t size = static_cast<std::size_t>(length);
        text.emplace(XmlText(size));
        if (std::fread(text->block.get(), 1, size, file) == size)
            text->normalize(size);
        else
            text.reset();
    }
    std::fclose(file);
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
    struct stat file = {};
    if (::stat(document.Value(), &file) == 0 && static_cast<std::uint64_t>(file.st_size) > limits.maxBytes)
        return XmlFailure{0, "File larger than " + std::to_string(limits.maxBytes >> 20) + " MiB."};
    int errorId = 0;
    const std::optional<XmlText> text = XmlText::read(document.Value(), errorId);
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
