#pragma once

#include "transport/drivers/MidiDriver.h"

namespace tarvix {

// What every backend keeps for an open port. Backends derive from it; the
// type is defined once so that several backends can live in one program.
struct MidiPortHandle {
    MidiPortHandle(MidiDirection direction, MidiCallback callback, void* instance)
        : m_direction(direction), m_callback(callback), m_instance(instance)
    {
    }
    virtual ~MidiPortHandle();
    MidiPortHandle(const MidiPortHandle&) = delete;
    MidiPortHandle& operator=(const MidiPortHandle&) = delete;

    MidiDirection m_direction;
    MidiCallback m_callback;
    void* m_instance;
};

} // namespace tarvix
