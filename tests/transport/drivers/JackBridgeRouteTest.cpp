#include "transport/drivers/jack/JackBridgeRoute.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace tarvix {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Kind = JackBridgeRoute::Kind;

bool Drops(const JackBridgeRoute& route, const Bytes& piece)
{
    return route.Drops(piece.data(), piece.size());
}

TEST(JackBridgeRouteTest, TellsTheBridgesByTheirPortNamesAndNamesTheAlsaPort)
{
    const JackBridgeRoute a2j = ClassifyJackPort("a2j:UM-ONE [24] (playback): UM-ONE MIDI 1");
    EXPECT_EQ(a2j.kind, Kind::A2jmidid);
    EXPECT_EQ(a2j.refusal, "a2jmidid passes no SysEx from JACK to the MIDI interface; send to "
                           "its ALSA port (ALSA: UM-ONE:UM-ONE MIDI 1) instead.");
    // a2jmidid -u leaves the client number out; brackets in a name stay.
    EXPECT_NE(ClassifyJackPort("a2j:Box [A] (playback): In").refusal.find("(ALSA: Box [A]:In)"),
              std::string::npos);
    EXPECT_NE(ClassifyJackPort("a2j:Box [A] [3] (playback): In").refusal.find("(ALSA: Box [A]:In)"),
              std::string::npos);
    // A name of another form still gets the advice, without a port.
    EXPECT_NE(ClassifyJackPort("a2j:odd").refusal.find("send to its ALSA port instead."),
              std::string::npos);

    const JackBridgeRoute pipeWire = ClassifyJackPort(
        "Midi-Bridge:Virtual MIDI Card 1:(playback_0) VirMIDI 0-0",
        {"alsa:seq:default:client_16:playback_0", "Virtual Raw MIDI 0-0:VirMIDI 0-0"});
    EXPECT_EQ(pipeWire.kind, Kind::PipeWire);
    EXPECT_EQ(pipeWire.refusal, "PipeWire's MIDI bridge passes only SysEx messages sent in one "
                                "piece, and a dump goes in many; send to the interface's ALSA "
                                "port (ALSA: Virtual Raw MIDI 0-0:VirMIDI 0-0) instead.");
    EXPECT_NE(ClassifyJackPort("Midi-Bridge:C:(playback_0) P", {"alsa:seq:default:client_16:p"})
                  .refusal.find("send to the interface's ALSA port instead."),
              std::string::npos);

    for (const char* direct :
         {"system:midi_playback_1", "tarvix-device:in", "a2jx:in", "Midi-Bridge-2:in", "xa2j:in"}) {
        const JackBridgeRoute route = ClassifyJackPort(direct);
        EXPECT_EQ(route.kind, Kind::Direct) << direct;
        EXPECT_EQ(route.refusal, "") << direct;
        EXPECT_FALSE(Drops(route, {0xF0, 0x01})) << direct;
    }
}

TEST(JackBridgeRouteTest, DropsWhatEachBridgeWouldNotPass)
{
    const JackBridgeRoute a2j = ClassifyJackPort("a2j:X [1] (playback): Y");
    EXPECT_FALSE(Drops(a2j, {0xF0, 0x01, 0x02, 0xF7}));
    EXPECT_TRUE(Drops(a2j, {0xF0, 0x01, 0x02, 0x03, 0xF7}));

    for (const JackBridgeRoute& route :
         {ClassifyJackPort("Midi-Bridge:C:(playback_0) P"),
          ClassifyJackPort("system:midi_playback_1", {"alsa_pcm:C/midi_capture_1"})}) {
        EXPECT_FALSE(Drops(route, {0xF0, 0x01, 0x02, 0x03, 0xF7}));
        EXPECT_TRUE(Drops(route, {0xF0, 0x01, 0x02})); // a message's first piece
        EXPECT_TRUE(Drops(route, {0x03, 0x04, 0xF7})); // and its last
        EXPECT_TRUE(Drops(route, {}));
    }
}

} // namespace
} // namespace tarvix
