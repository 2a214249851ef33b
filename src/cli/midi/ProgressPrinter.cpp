#include "cli/midi/ProgressPrinter.h"

#include "cli/midi/Terminal.h"

#include <algorithm>

namespace tarvix::cli {

namespace {
constexpr std::size_t kBarWidth = 40;
constexpr std::size_t kDefaultWidth = 80;
constexpr auto kNumbersInterval = std::chrono::seconds(1);

// The lines without their numbers: what must be shown at once when it changes.
std::string Shape(const std::vector<std::string>& lines)
{
    std::string shape;
    for (const std::string& line : lines) {
        for (const char c : line)
            if (c < '0' || c > '9')
                shape += c;
        shape += '\n';
    }
    return shape;
}
} // namespace

CProgressPrinter::CProgressPrinter(std::FILE* stream, bool terminal)
    : m_stream(stream), m_terminal(terminal)
{
}

CProgressPrinter::Lines CProgressPrinter::MakeLines(const std::string& text, std::uint32_t position,
                                                    std::uint32_t range) const
{
    Lines lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    const std::uint64_t done = std::min(position, range);
    const auto percent = range == 0 ? 0u : static_cast<unsigned>(done * 100 / range);
    if (m_terminal) {
        const auto filled = range == 0 ? 0 : static_cast<std::size_t>(done * kBarWidth / range);
        lines.push_back("[" + std::string(filled, '#') + std::string(kBarWidth - filled, '-') +
                        "] " + std::to_string(percent) + "%");
    } else if (lines.empty()) {
        lines.push_back(std::to_string(percent) + "%");
    } else {
        lines.back() += " (" + std::to_string(percent) + "%)";
    }
    return lines;
}

void CProgressPrinter::Show(const std::string& text, std::uint32_t position, std::uint32_t range)
{
    const Lines lines = MakeLines(text, position, range);
    if (m_terminal) {
        Redraw(lines);
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (Shape(lines) == Shape(m_shown) && now - m_lastPrint < kNumbersInterval) {
        m_pending = lines;
        return;
    }
    PrintChanges(lines);
    m_lastPrint = now;
}

void CProgressPrinter::Finish()
{
    if (!m_terminal && !m_pending.empty())
        PrintChanges(m_pending);
    m_pending.clear();
    m_rows = 0;
    std::fflush(m_stream);
}

void CProgressPrinter::Message(const std::string& text)
{
    Finish();
    m_shown.clear();
    std::fputs(text.c_str(), m_stream);
    std::fflush(m_stream);
}

void CProgressPrinter::Redraw(const Lines& lines)
{
    if (lines == m_shown && m_rows != 0)
        return;
    if (m_rows != 0)
        std::fprintf(m_stream, "\x1b[%zuA\r\x1b[J", m_rows); // back to the top, clear below
    const std::size_t width = TerminalWidth();
    m_rows = 0;
    for (const std::string& line : lines) {
        std::fprintf(m_stream, "%s\n", line.c_str());
        m_rows += std::max<std::size_t>(1, (line.size() + width - 1) / width);
    }
    m_shown = lines;
    std::fflush(m_stream);
}

void CProgressPrinter::PrintChanges(const Lines& lines)
{
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (i >= m_shown.size() || lines[i] != m_shown[i])
            std::fprintf(m_stream, "%s\n", lines[i].c_str());
    m_shown = lines;
    m_pending.clear();
    std::fflush(m_stream);
}

std::size_t CProgressPrinter::TerminalWidth() const
{
    const std::size_t columns = TerminalColumns(m_stream);
    return columns > 0 ? columns : kDefaultWidth;
}

} // namespace tarvix::cli
