#pragma once

#include <string>
#include <string_view>

namespace tarvix {

enum class LineEnds { Crlf, Lf };

// Collects listing text. The text views show CR LF line ends, a terminal
// wants LF: the builder converts every "\n" it is given, so the code that
// words a listing never thinks about line ends.
class CTextBuilder {
public:
    explicit CTextBuilder(LineEnds lineEnds = LineEnds::Crlf) : m_lineEnds(lineEnds) {}

    void Append(std::string_view text);
    // printf-style formatting into a scratch string, then Append.
    void AppendFormat(const char* format, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 2, 3)))
#endif
        ;

    const std::string& Text() const
    {
        return m_text;
    }
    std::string TakeText()
    {
        return std::move(m_text);
    }

private:
    LineEnds m_lineEnds;
    std::string m_text;
    std::string m_scratch;
};

// printf-style formatting into a std::string.
std::string FormatText(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

} // namespace tarvix
