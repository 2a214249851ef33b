#pragma once

#include "io/ByteBuffer.h"
#include "model/TextBuilder.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace tarvix {

// Collects the MIDI file dump report. The editor's text view wants CR LF
// line ends, a terminal LF: the sink converts every "\n" it is given, so the
// code that words the report never thinks about line ends.
class CMidiDumpSink {
public:
    explicit CMidiDumpSink(LineEnds lineEnds = LineEnds::Crlf) : m_lineEnds(lineEnds) {}
    CMidiDumpSink(const CMidiDumpSink&) = delete;
    CMidiDumpSink& operator=(const CMidiDumpSink&) = delete;
    virtual ~CMidiDumpSink() = default;

    // A piece after the last line feed is kept as it is, so the next call
    // continues the same line.
    virtual void WriteText(std::string_view text);
    // The status byte and the data as one run of hex lines. Every line after
    // the first is labelled with the index in the data, not counting the
    // status byte, of its first byte: 0, 0F, 1F ... as the report has always
    // shown them.
    virtual void HexDumpWithStatus(std::uint8_t status, const std::uint8_t* data,
                                   std::uint32_t length);
    // Lines of 16 bytes labelled 0, 10, 20 ...; nothing without data.
    virtual void HexDump(const std::uint8_t* data, std::uint32_t length);

    // printf-style formatting, then WriteText.
    void WriteFormat(const char* format, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 2, 3)))
#endif
        ;

    // Hands the text to output whenever it reaches chunkBytes, keeping only
    // what has not been handed over, so a report of any size streams through
    // a small buffer. Flush hands over the rest.
    void StreamTo(std::function<void(std::string_view)> output, std::uint32_t chunkBytes = 65536);
    void Flush();

    // The MIDI File Dump command shows every kind of event.
    void SetShown(bool channelEvents, bool sysexEvents, bool metaEvents);
    bool ShowsChannelEvents() const
    {
        return m_showChannelEvents != 0;
    }
    bool ShowsSysexEvents() const
    {
        return m_showSysexEvents != 0;
    }
    bool ShowsMetaEvents() const
    {
        return m_showMetaEvents != 0;
    }

    // The report, or with StreamTo the part not yet handed over.
    const CByteBuffer& GetText() const
    {
        return m_text;
    }
    std::string_view GetTextView() const
    {
        return {reinterpret_cast<const char*>(m_text.GetData()), m_text.GetSize()};
    }

private:
    void WriteHexLine(std::uint32_t offset, const std::uint8_t* bytes, std::uint32_t count);

    std::uint8_t m_showChannelEvents = 1;
    std::uint8_t m_showSysexEvents = 1;
    std::uint8_t m_showMetaEvents = 1;
    CByteBuffer m_text;
    LineEnds m_lineEnds;
    std::function<void(std::string_view)> m_output;
    std::uint32_t m_chunkBytes = 0;
};

} // namespace tarvix
