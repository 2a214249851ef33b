#pragma once

#include <exception>
#include <string>
#include <utility>

namespace tarvix {

// The one failure of Standard MIDI File input and output that is thrown: the
// file could not be opened, read or written, or memory ran out. It carries
// the sentence to show the user. Everything wrong inside a file's bytes is
// tolerated instead; the reader keeps what it could read.
class CMidiFileException : public std::exception {
public:
    static constexpr const char* kNotEnoughMemory = "Not enough memory\n";

    explicit CMidiFileException(std::string message) : m_message(std::move(message)) {}
    const std::string& GetMessage() const { return m_message; }
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    std::string m_message;
};

} // namespace tarvix
