#include "settings/MidiPortSettings.h"

namespace tarvix {

PortSettings PortSettingsFor(const SettingValues& values)
{
    PortSettings settings;
    settings.inDevice = values.midiInDevice;
    settings.inBufferSize = values.midiInBufSize;
    settings.inBufferCount = values.midiInBufNumber;
    settings.outDevice = values.midiOutDevice;
    settings.outBufferSize = values.midiOutBufSize;
    settings.outBufferCount = values.midiOutBufNumber;
    settings.outSysexDelay = values.midiOutSyxDelay;
    settings.outBufferDelay = values.midiOutBufDelay;
    return settings;
}

} // namespace tarvix
