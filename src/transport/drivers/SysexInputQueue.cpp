#include "transport/drivers/SysexInputQueue.h"

#include "transport/drivers/MidiHeaderRules.h"

namespace tarvix {

namespace {

constexpr std::uint8_t kSysexStart = 0xF0;
constexpr std::uint8_t kSysexEnd = 0xF7;
constexpr std::uint8_t kFirstRealTime = 0xF8;
constexpr std::uint8_t kStatusBit = 0x80;

} // namespace

CSysexInputQueue::CSysexInputQueue(std::size_t pendingLimit) : m_pendingLimit(pendingLimit) {}

void CSysexInputQueue::AddBuffer(MidiHeader& header)
{
    header.bytesRecorded = 0;
    MarkHeaderQueued(header);
    m_headers.push_back({&header, header.bufferLength});
}

void CSysexInputQueue::Start()
{
    m_started = true;
}

void CSysexInputQueue::Keep(std::uint8_t byte)
{
    if (m_pending.size() >= m_pendingLimit) {
        ++m_lostBytes;
        return;
    }
    m_pending.push_back(byte);
}

void CSysexInputQueue::Write(const std::uint8_t* data, std::size_t size)
{
    if (!m_started) {
        // Whatever arrives before Start is dropped whole, so input begins
        // with the next F0 rather than in the middle of a message.
        m_inSysex = false;
        m_cut = false;
        return;
    }
    for (std::size_t i = 0; i < size; ++i) {
        const std::uint8_t byte = data[i];
        if (byte >= kFirstRealTime) {
            // Real-time bytes may sit inside a SysEx; they are short
            // messages of their own and do not end it.
            continue;
        }
        if (byte == kSysexStart) {
            m_inSysex = true;
            m_cut = false;
            Keep(byte);
        } else if (byte == kSysexEnd) {
            if (m_inSysex) {
                Keep(byte);
            } else if (m_cut) {
                ++m_lostBytes; // the end of the message that was cut
            }
            m_inSysex = false;
            m_cut = false;
        } else if ((byte & kStatusBit) != 0) {
            // Any other status byte ends a SysEx without F7 and starts a
            // short message, which the program does not collect. The
            // message it cut lost its end: the status byte and the data
            // after it, up to the next F0 or F7, count as lost.
            if (m_inSysex || m_cut) {
                ++m_lostBytes;
                m_cut = true;
            }
            m_inSysex = false;
        } else if (m_inSysex) {
            Keep(byte);
        } else if (m_cut) {
            ++m_lostBytes;
        }
    }
}

void CSysexInputQueue::Fill(std::vector<MidiHeader*>& returned)
{
    while (!m_pending.empty() && !m_headers.empty()) {
        MidiHeader& header = *m_headers.front().header;
        const std::uint32_t capacity = m_headers.front().capacity;
        bool giveBack = false;
        if (m_pending.front() == kSysexStart && header.bytesRecorded > 0) {
            giveBack = true; // a message cut short before; the new one starts a buffer
        } else {
            const std::uint8_t byte = m_pending.front();
            m_pending.pop_front();
            header.data[header.bytesRecorded++] = byte;
            giveBack = byte == kSysexEnd || header.bytesRecorded >= capacity;
        }
        if (giveBack) {
            MarkHeaderDone(header);
            returned.push_back(&header);
            m_headers.pop_front();
        }
    }
}

void CSysexInputQueue::Reset(std::vector<MidiHeader*>& returned)
{
    for (const Added& added : m_headers) {
        MarkHeaderDone(*added.header);
        returned.push_back(added.header);
    }
    m_headers.clear();
    m_pending.clear();
    m_started = false;
    m_inSysex = false;
    m_cut = false;
}

} // namespace tarvix
