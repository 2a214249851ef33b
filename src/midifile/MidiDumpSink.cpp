#include "midifile/MidiDumpSink.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

namespace tarvix {

namespace {
constexpr std::uint32_t kBytesPerLine = 16;
constexpr std::size_t kLineWidth = 79;
constexpr std::size_t kFirstHexColumn = 9;
constexpr std::size_t kFirstCharColumn = 57;
constexpr char kHexDigits[] = "0123456789ABCDEF";
} // namespace

void CMidiDumpSink::SetShown(bool channelEvents, bool sysexEvents, bool metaEvents)
{
    m_showChannelEvents = channelEvents ? 1 : 0;
    m_showSysexEvents = sysexEvents ? 1 : 0;
    m_showMetaEvents = metaEvents ? 1 : 0;
}

void CMidiDumpSink::StreamTo(std::function<void(std::string_view)> output, std::uint32_t chunkBytes)
{
    m_output = std::move(output);
    m_chunkBytes = chunkBytes;
}

void CMidiDumpSink::Flush()
{
    if (!m_output)
        return;
    m_output(GetTextView());
    m_text.Clear();
}

void CMidiDumpSink::WriteText(std::string_view text)
{
    if (m_lineEnds == LineEnds::Crlf) {
        std::size_t lineEnd = 0;
        while ((lineEnd = text.find('\n')) != std::string_view::npos) {
            m_text.AppendText(text.substr(0, lineEnd));
            m_text.AppendText("\r\n");
            text.remove_prefix(lineEnd + 1);
        }
    }
    m_text.AppendText(text);
    if (m_output && m_text.GetSize() >= m_chunkBytes)
        Flush();
}

void CMidiDumpSink::WriteFormat(const char* format, ...)
{
    char line[256];
    std::va_list args;
    va_start(args, format);
    std::va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(line, sizeof line, format, args);
    va_end(args);
    if (needed >= 0 && static_cast<std::size_t>(needed) < sizeof line) {
        WriteText({line, static_cast<std::size_t>(needed)});
    } else if (needed > 0) {
        std::string longer(static_cast<std::size_t>(needed), '\0');
        std::vsnprintf(longer.data(), longer.size() + 1, format, copy);
        WriteText(longer);
    }
    va_end(copy);
}

void CMidiDumpSink::HexDumpWithStatus(std::uint8_t status, const std::uint8_t* data,
                                      std::uint32_t length)
{
    if (data == nullptr)
        length = 0;
    const std::uint64_t total = std::uint64_t{length} + 1;
    for (std::uint64_t start = 0; start < total; start += kBytesPerLine) {
        std::uint8_t bytes[kBytesPerLine];
        const auto count =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(kBytesPerLine, total - start));
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint64_t index = start + i;
            bytes[i] = index == 0 ? status : data[index - 1];
        }
        WriteHexLine(static_cast<std::uint32_t>(start == 0 ? 0 : start - 1), bytes, count);
    }
}

void CMidiDumpSink::HexDump(const std::uint8_t* data, std::uint32_t length)
{
    if (data == nullptr)
        return;
    for (std::uint32_t start = 0; start < length; start += std::min(kBytesPerLine, length - start))
        WriteHexLine(start, data + start, std::min(kBytesPerLine, length - start));
}

// 79 columns, trailing blanks kept: the offset, 16 hex pairs, 16 characters.
void CMidiDumpSink::WriteHexLine(std::uint32_t offset, const std::uint8_t* bytes,
                                 std::uint32_t count)
{
    char line[kLineWidth + 1];
    std::memset(line, ' ', kLineWidth);
    line[kLineWidth] = '\n';
    for (std::size_t digit = 0; digit < 8; ++digit)
        line[digit] = kHexDigits[(offset >> (28 - 4 * digit)) & 0x0F];
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint8_t byte = bytes[i];
        line[kFirstHexColumn + 3 * i] = kHexDigits[byte >> 4];
        line[kFirstHexColumn + 3 * i + 1] = kHexDigits[byte & 0x0F];
        line[kFirstCharColumn + i] = byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.';
    }
    WriteText({line, sizeof line});
}

} // namespace tarvix
