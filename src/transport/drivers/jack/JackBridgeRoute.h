#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvix {

// JACK ports that lead to the ALSA sequencer through a bridge which cannot
// carry a dump, told by their JACK names. A dump is one SysEx message of
// about 71 KB that goes out in pieces, as the cable takes it, and so in
// many JACK events:
// - a2jmidid (client "a2j") passes from JACK to ALSA only events of up to
//   4 bytes: no SysEx at all (a2jmidid 9);
// - jackd's own sequencer bridge (jackd -X seq; ports "system:midi_playback_N"
//   with an alias "alsa_pcm:CLIENT/midi_capture_N") makes a sequencer event
//   of each JACK event on its own, and one that is part of a SysEx message
//   makes none: nothing arrives (jackd 1.9.21);
// - PipeWire's MIDI bridge (client "Midi-Bridge") makes a sequencer event
//   of each JACK event on its own: a SysEx message in several events
//   arrives as its first piece (PipeWire 0.3.65).
// The same interface is reachable directly as an ALSA port.
struct JackBridgeRoute {
    enum class Kind { Direct, A2jmidid, JackdSequencer, PipeWire };
    Kind kind = Kind::Direct;
    // Why a send through it is refused, pointing to the ALSA port; empty
    // when direct.
    std::string refusal;

    // Whether the bridge drops this piece of a SysEx message (data, size):
    // everything for a2jmidid, a piece short of a whole message for the
    // others.
    bool Drops(const std::uint8_t* data, std::size_t size) const;
};

// By the port's name and its aliases (jack_port_get_aliases).
JackBridgeRoute ClassifyJackPort(const std::string& jackPortName,
                                 const std::vector<std::string>& aliases = {});

} // namespace tarvix
