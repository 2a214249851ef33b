#include "cli/commands/DeviceCommandBase.h"

namespace tarvix::cli {

const char* CDeviceCommandBase::Summary() const
{
    return "A simulated Alesis MMT-8 with MIDI ports of its own, for tests and demonstrations.";
}

const char* CDeviceCommandBase::Details() const
{
    return "It opens the ports NAME:in and NAME:out on every MIDI system that is running\n"
           "(JACK, ALSA); 'tarvix-cli ports' lists them like a hardware interface's. It\n"
           "sends its memory as the device's dump when Enter is pressed, on SIGUSR1, or once\n"
           "after --send-after; every dump it receives becomes its memory and is written to\n"
           "--received. It says what it does on stdout, a line at a time, bytes its input\n"
           "lost included. Ctrl+C or SIGTERM ends it.";
}

std::vector<OptionSpec> CDeviceCommandBase::Options() const
{
    return {{"--name", true, "the ports' client name (default tarvix-device)"},
            {"--memory", true, "a .syx file with a dump, sent as it is (default: empty memory)"},
            {"--send-after", true, "send once, this many seconds after start"},
            {"--received", true, "the .syx file each received dump is written to"},
            {"--wire-speed", false,
             "behave as on a MIDI cable: send at 3125 bytes a second, and take input through a "
             "buffer that drains at that speed, losing what does not fit"},
            {"--input-buffer", true,
             "BYTES: that input buffer's size with --wire-speed (default 4096)"}};
}

} // namespace tarvix::cli
