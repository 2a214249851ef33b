#include "transport/drivers/jack/JackBridgeRoute.h"

namespace tarvix {

namespace {

constexpr const char* kA2jClient = "a2j:";
constexpr const char* kPipeWireClient = "Midi-Bridge:";
constexpr const char* kJackdSequencerAlias = "alsa_pcm:";

bool StartsWith(const std::string& text, const std::string& start)
{
    return text.rfind(start, 0) == 0;
}

// a2jmidid names a port "a2j:CLIENT [ID] (playback): PORT", [ID] left out
// with its -u option; the ALSA backend lists it as "ALSA: CLIENT:PORT".
std::string AlsaNameOfA2jPort(const std::string& name)
{
    const std::string rest = name.substr(std::string(kA2jClient).size());
    const std::size_t direction = rest.find(" (playback): ");
    if (direction == std::string::npos) {
        return {};
    }
    std::string client = rest.substr(0, direction);
    const std::size_t id = client.rfind(" [");
    if (id != std::string::npos && client.size() > id + 3 && client.back() == ']' &&
        client.find_first_not_of("0123456789", id + 2) == client.size() - 1) {
        client.erase(id);
    }
    return "ALSA: " + client + ":" + rest.substr(direction + 13);
}

// PipeWire names a port "Midi-Bridge:CARD:(playback_N) PORT" and gives it
// the alias "CLIENT:PORT", the ALSA names; "alsa:seq:..." is its other one.
std::string AlsaNameOfPipeWirePort(const std::vector<std::string>& aliases)
{
    for (const std::string& alias : aliases) {
        if (!StartsWith(alias, "alsa:") && alias.find(':') != std::string::npos) {
            return "ALSA: " + alias;
        }
    }
    return {};
}

// jackd's sequencer bridge: "alsa_pcm:CLIENT/midi_capture_N", the ALSA
// client's name with its spaces made dashes.
std::string ClientOfJackdSequencerAlias(const std::vector<std::string>& aliases)
{
    for (const std::string& alias : aliases) {
        const std::size_t slash = alias.rfind("/midi_capture_");
        if (StartsWith(alias, kJackdSequencerAlias) && slash != std::string::npos) {
            return alias.substr(std::string(kJackdSequencerAlias).size(),
                                slash - std::string(kJackdSequencerAlias).size());
        }
    }
    return {};
}

} // namespace

bool JackBridgeRoute::Drops(const std::uint8_t* data, std::size_t size) const
{
    switch (kind) {
    case Kind::A2jmidid: return size > 4;
    case Kind::JackdSequencer:
    case Kind::PipeWire: return size == 0 || data[0] != 0xF0 || data[size - 1] != 0xF7;
    case Kind::Direct: break;
    }
    return false;
}

JackBridgeRoute ClassifyJackPort(const std::string& jackPortName,
                                 const std::vector<std::string>& aliases)
{
    JackBridgeRoute route;
    const std::string sequencerClient = ClientOfJackdSequencerAlias(aliases);
    if (StartsWith(jackPortName, kA2jClient)) {
        route.kind = JackBridgeRoute::Kind::A2jmidid;
        const std::string alsa = AlsaNameOfA2jPort(jackPortName);
        route.refusal = "a2jmidid passes no SysEx from JACK to the MIDI interface; send to its "
                        "ALSA port" +
                        (alsa.empty() ? std::string() : " (" + alsa + ")") + " instead.";
    } else if (!sequencerClient.empty()) {
        route.kind = JackBridgeRoute::Kind::JackdSequencer;
        route.refusal = "jackd's ALSA sequencer bridge (jackd -X seq) passes only SysEx "
                        "messages sent in one piece, and a dump goes in many; send to the "
                        "interface's ALSA port (the one jackd calls " +
                        sequencerClient + ") instead, or run jackd with -X raw.";
    } else if (StartsWith(jackPortName, kPipeWireClient)) {
        route.kind = JackBridgeRoute::Kind::PipeWire;
        const std::string alsa = AlsaNameOfPipeWirePort(aliases);
        route.refusal = "PipeWire's MIDI bridge passes only SysEx messages sent in one piece, "
                        "and a dump goes in many; send to the interface's ALSA port" +
                        (alsa.empty() ? std::string() : " (" + alsa + ")") + " instead.";
    }
    return route;
}

} // namespace tarvix
