#include "transport/drivers/alsa/AlsaPortList.h"

#include <map>
#include <memory>

namespace tarvix {

namespace {

struct ClientInfoFree {
    void operator()(snd_seq_client_info_t* info) const { snd_seq_client_info_free(info); }
};
struct PortInfoFree {
    void operator()(snd_seq_port_info_t* info) const { snd_seq_port_info_free(info); }
};

} // namespace

std::vector<AlsaPortAddress> ListAlsaPorts(snd_seq_t* seq, MidiDirection direction)
{
    std::vector<AlsaPortAddress> ports;
    snd_seq_client_info_t* rawClient = nullptr;
    snd_seq_port_info_t* rawPort = nullptr;
    if (snd_seq_client_info_malloc(&rawClient) < 0) {
        return ports;
    }
    const std::unique_ptr<snd_seq_client_info_t, ClientInfoFree> clientInfo(rawClient);
    if (snd_seq_port_info_malloc(&rawPort) < 0) {
        return ports;
    }
    const std::unique_ptr<snd_seq_port_info_t, PortInfoFree> portInfo(rawPort);

    const unsigned int wanted = direction == MidiDirection::Input
                                    ? SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ
                                    : SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;
    const int self = snd_seq_client_id(seq);
    std::map<std::string, int> seen;

    snd_seq_client_info_set_client(clientInfo.get(), -1);
    while (snd_seq_query_next_client(seq, clientInfo.get()) >= 0) {
        const int client = snd_seq_client_info_get_client(clientInfo.get());
        if (client == SND_SEQ_CLIENT_SYSTEM || client == self) {
            continue; // timer and announcements; and our own ports
        }
        const std::string clientName = snd_seq_client_info_get_name(clientInfo.get());
        const bool hardware = snd_seq_client_info_get_card(clientInfo.get()) >= 0;
        snd_seq_port_info_set_client(portInfo.get(), client);
        snd_seq_port_info_set_port(portInfo.get(), -1);
        while (snd_seq_query_next_port(seq, portInfo.get()) >= 0) {
            const unsigned int caps = snd_seq_port_info_get_capability(portInfo.get());
            if ((caps & wanted) != wanted || (caps & SND_SEQ_PORT_CAP_NO_EXPORT) != 0) {
                continue;
            }
            AlsaPortAddress address;
            address.client = client;
            address.port = snd_seq_port_info_get_port(portInfo.get());
            address.name = clientName + ":" + snd_seq_port_info_get_name(portInfo.get());
            // A card's client, or a port that says it is one (USB MIDI
            // through a user-space driver).
            address.hardware = hardware || (snd_seq_port_info_get_type(portInfo.get()) &
                                            SND_SEQ_PORT_TYPE_HARDWARE) != 0;
            const int count = ++seen[address.name];
            if (count > 1) {
                address.name += " #" + std::to_string(count);
            }
            ports.push_back(address);
        }
    }
    return ports;
}

} // namespace tarvix
