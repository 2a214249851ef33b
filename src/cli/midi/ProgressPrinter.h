#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace tarvix::cli {

// Shows a transfer's text and progress on a stream. On a terminal the
// text and a bar are redrawn in place; otherwise plain lines, only those
// that changed, and a change in numbers alone at most once a second, so
// that a log stays readable.
class CProgressPrinter {
public:
    CProgressPrinter(std::FILE* stream, bool terminal);

    void Show(const std::string& text, std::uint32_t position, std::uint32_t range);
    // Shows what a plain display held back; what is drawn stays.
    void Finish();
    // A message of its own below what is drawn, which then stays.
    void Message(const std::string& text);

private:
    using Lines = std::vector<std::string>;

    Lines MakeLines(const std::string& text, std::uint32_t position, std::uint32_t range) const;
    void Redraw(const Lines& lines);
    void PrintChanges(const Lines& lines);
    std::size_t TerminalWidth() const;

    std::FILE* m_stream;
    bool m_terminal;
    Lines m_shown;
    Lines m_pending;
    std::size_t m_rows = 0; // terminal rows of what is drawn
    std::chrono::steady_clock::time_point m_lastPrint;
};

} // namespace tarvix::cli
