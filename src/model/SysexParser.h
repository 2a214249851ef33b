#pragma once

#include <cstdint>
#include <span>

namespace tarvix {

class CMmt8Memory;

// Splits a byte buffer into F0..F7 messages and hands each on. The base
// class accepts every message; a parser for one device overrides
// HandleMessage.
class CSysexParser {
public:
    explicit CSysexParser(std::span<const std::uint8_t> buffer) : m_buffer(buffer) {}
    virtual ~CSysexParser() = default;

    // Not empty, starts with F0 and ends with F7.
    virtual bool IsComplete() const;
    // Nonzero to go on with the next message.
    virtual int HandleMessage(std::span<const std::uint8_t> message, CMmt8Memory& memory);
    // Hands every message on until one is refused or the bytes stop being
    // messages; returns the bytes handled.
    virtual std::uint32_t Parse(CMmt8Memory& memory);

protected:
    std::span<const std::uint8_t> m_buffer;
};

// Loads each MMT-8 memory dump it meets into the document; the last wins.
class CMmt8SysexParser : public CSysexParser {
public:
    using CSysexParser::CSysexParser;
    int HandleMessage(std::span<const std::uint8_t> message, CMmt8Memory& memory) override;
};

} // namespace tarvix
