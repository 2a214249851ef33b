#pragma once

#include "transport/drivers/MidiDriver.h"

#include <alsa/asoundlib.h>

#include <string>
#include <vector>

namespace tarvix {

struct AlsaPortAddress {
    int client = 0;
    int port = 0;
    std::string name;      // "<client name>:<port name>"
    bool hardware = false; // a sound card's port: bytes leave on a 31250-baud wire
};

// The ports of other clients that can be read from (Input) or written to
// (Output), in the sequencer's order. Names carry no client or port
// numbers: those change when an interface is plugged in again, and a name
// stored in the settings must still find the port. Two ports of the same
// name (two identical interfaces) get " #2", " #3", ... in listing order.
std::vector<AlsaPortAddress> ListAlsaPorts(snd_seq_t* seq, MidiDirection direction);

} // namespace tarvix
