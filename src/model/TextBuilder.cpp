#include "model/TextBuilder.h"

#include <cstdarg>
#include <cstdio>

namespace tarvix {

namespace {
void FormatInto(std::string& out, const char* format, std::va_list args)
{
    std::va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (needed <= 0) {
        out.clear();
        return;
    }
    out.resize(static_cast<std::size_t>(needed));
    std::vsnprintf(out.data(), out.size() + 1, format, args);
}
} // namespace

void CTextBuilder::Append(std::string_view text)
{
    if (m_lineEnds == LineEnds::Lf) {
        m_text.append(text);
        return;
    }
    for (const char c : text) {
        if (c == '\n')
            m_text.push_back('\r');
        m_text.push_back(c);
    }
}

void CTextBuilder::AppendFormat(const char* format, ...)
{
    std::va_list args;
    va_start(args, format);
    FormatInto(m_scratch, format, args);
    va_end(args);
    Append(m_scratch);
}

std::string FormatText(const char* format, ...)
{
    std::string text;
    std::va_list args;
    va_start(args, format);
    FormatInto(text, format, args);
    va_end(args);
    return text;
}

} // namespace tarvix
