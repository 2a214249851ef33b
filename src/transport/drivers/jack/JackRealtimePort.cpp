#include "transport/drivers/jack/JackRealtimePort.h"

#include "transport/drivers/SysexEventLength.h"

#include <jack/midiport.h>

namespace tarvix {

CJackRealtimePort::CJackRealtimePort(jack_port_t* port, MidiDirection direction,
                                     std::size_t ringBytes)
    : m_port(port), m_direction(direction), m_ring(jack_ringbuffer_create(ringBytes))
{
}

CJackRealtimePort::~CJackRealtimePort()
{
    if (m_ring != nullptr) {
        jack_ringbuffer_free(m_ring);
    }
}

bool CJackRealtimePort::Process(jack_nframes_t frames)
{
    void* buffer = jack_port_get_buffer(m_port, frames);
    if (buffer == nullptr) {
        return false;
    }
    return m_direction == MidiDirection::Input ? ProcessInput(buffer) : ProcessOutput(buffer);
}

void CJackRealtimePort::CyclesMissed()
{
    if (m_direction == MidiDirection::Input && m_inSysex) {
        m_lost.fetch_add(1);
    }
}

bool CJackRealtimePort::ProcessInput(void* buffer)
{
    bool moved = false;
    const jack_nframes_t count = jack_midi_get_event_count(buffer);
    for (jack_nframes_t i = 0; i < count; ++i) {
        jack_midi_event_t event;
        if (jack_midi_event_get(&event, buffer, i) != 0) {
            continue;
        }
        for (std::size_t at = 0; at < event.size; ++at) {
            const std::uint8_t byte = event.buffer[at];
            if (byte >= 0x80 && byte < 0xF8) { // real-time bytes do not end a message
                m_inSysex = byte == 0xF0;
            }
        }
        // Whole events or nothing: the thread is behind, and a part of an
        // event would only be joined to the wrong bytes.
        if (jack_ringbuffer_write_space(m_ring) < event.size) {
            m_lost.fetch_add(event.size);
            continue;
        }
        jack_ringbuffer_write(m_ring, reinterpret_cast<const char*>(event.buffer), event.size);
        moved = true;
    }
    return moved;
}

bool CJackRealtimePort::ProcessOutput(void* buffer)
{
    jack_midi_clear_buffer(buffer);
    const std::uint32_t flush = m_flushRequested.load();
    if (flush != m_flushDone.load()) {
        const std::size_t dropped = jack_ringbuffer_read_space(m_ring);
        jack_ringbuffer_read_advance(m_ring, dropped);
        m_moved.fetch_add(dropped);
        m_flushDone.store(flush);
        return true;
    }
    bool moved = false;
    while (true) {
        const std::size_t available = jack_ringbuffer_read_space(m_ring);
        // A JACK MIDI port buffer holds only one period's worth of events:
        // this is how large an event may still be in this period. What
        // does not fit stays in the ring for the next period; nothing is
        // dropped.
        const std::size_t room = jack_midi_max_event_size(buffer);
        if (available == 0 || room == 0) {
            break;
        }
        jack_ringbuffer_data_t pieces[2];
        jack_ringbuffer_get_read_vector(m_ring, pieces);
        const std::size_t limit = available < room ? available : room;
        const auto* first = reinterpret_cast<const std::uint8_t*>(pieces[0].buf);
        std::size_t length = SysexEventLength(first, pieces[0].len, limit);
        if (length == pieces[0].len && length < limit && first[length - 1] != 0xF7) {
            length += SysexEventLength(reinterpret_cast<const std::uint8_t*>(pieces[1].buf),
                                       pieces[1].len, limit - length);
        }
        jack_midi_data_t* event = jack_midi_event_reserve(buffer, 0, length);
        if (event == nullptr) {
            break;
        }
        jack_ringbuffer_read(m_ring, reinterpret_cast<char*>(event), length);
        m_moved.fetch_add(length);
        moved = true;
    }
    return moved;
}

void CJackRealtimePort::ReadInput(const std::function<void(const std::uint8_t*, std::size_t)>& sink)
{
    jack_ringbuffer_data_t pieces[2];
    jack_ringbuffer_get_read_vector(m_ring, pieces);
    std::size_t taken = 0;
    for (const jack_ringbuffer_data_t& piece : pieces) {
        if (piece.len > 0) {
            sink(reinterpret_cast<const std::uint8_t*>(piece.buf), piece.len);
            taken += piece.len;
        }
    }
    jack_ringbuffer_read_advance(m_ring, taken);
}

std::size_t CJackRealtimePort::WriteOutput(const std::uint8_t* data, std::size_t size)
{
    return jack_ringbuffer_write(m_ring, reinterpret_cast<const char*>(data), size);
}

} // namespace tarvix
