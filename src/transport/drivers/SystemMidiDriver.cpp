#include "transport/drivers/SystemMidiDriver.h"

#include "transport/drivers/MidiService.h"

#ifdef TARVIX_HAVE_ALSA
#include "transport/drivers/alsa/AlsaMidiDriver.h"
#endif
#ifdef TARVIX_HAVE_JACK
#include "transport/drivers/jack/JackMidiDriver.h"
#endif
#ifdef TARVIX_HAVE_WINMM
#include "transport/drivers/winmm/WinMmMidiDriver.h"
#endif

namespace tarvix {

std::unique_ptr<MidiDriver> CreateSystemMidiDriver()
{
    std::vector<std::unique_ptr<MidiDriver>> backends;
#ifdef TARVIX_HAVE_ALSA
    backends.push_back(std::make_unique<AlsaMidiDriver>());
#endif
#ifdef TARVIX_HAVE_JACK
    backends.push_back(std::make_unique<JackMidiDriver>());
#endif
#ifdef TARVIX_HAVE_WINMM
    backends.push_back(std::make_unique<WinMmMidiDriver>());
#endif
    return std::make_unique<MidiService>(std::move(backends));
}

} // namespace tarvix
