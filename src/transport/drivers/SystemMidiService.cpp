#include "transport/drivers/SystemMidiService.h"

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

std::unique_ptr<IMidiDriver> CreateSystemMidiService()
{
    std::vector<std::unique_ptr<IMidiDriver>> backends;
#ifdef TARVIX_HAVE_ALSA
    backends.push_back(std::make_unique<CAlsaMidiDriver>());
#endif
#ifdef TARVIX_HAVE_JACK
    backends.push_back(std::make_unique<CJackMidiDriver>());
#endif
#ifdef TARVIX_HAVE_WINMM
    backends.push_back(std::make_unique<WinMmMidiDriver>());
#endif
    return std::make_unique<CMidiService>(std::move(backends));
}

} // namespace tarvix
