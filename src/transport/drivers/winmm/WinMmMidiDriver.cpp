#include "transport/drivers/winmm/WinMmMidiDriver.h"

#include "io/platform/WideText.h"
#include "transport/drivers/MidiErrorText.h"
#include "transport/drivers/MidiHeaderRules.h"
#include "transport/drivers/MidiPortHandle.h"

#include <map>
#include <memory>
#include <mutex>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// mmsystem.h uses the types windows.h declares: the blank line above keeps
// the include sorter from putting it first.

#include <mmsystem.h>

namespace tarvix {

namespace {

// An open port: the service's handle, and the service's header for each of
// the program's headers while it is prepared. The service's header points
// back at the program's through its user word.
struct WinMmPort final : MidiPortHandle {
    using MidiPortHandle::MidiPortHandle;

    HMIDIIN in = nullptr;
    HMIDIOUT out = nullptr;
    std::mutex lock; // guards headers; never taken by the service's callback
    std::map<MidiHeader*, std::unique_ptr<MIDIHDR>> headers;

    bool IsInput() const { return m_direction == MidiDirection::Input; }

    MIDIHDR* Find(MidiHeader& header)
    {
        const std::lock_guard guard(lock);
        const auto found = headers.find(&header);
        return found == headers.end() ? nullptr : found->second.get();
    }
};

WinMmPort* PortOf(MidiHandle handle)
{
    return static_cast<WinMmPort*>(handle);
}

// The service's header for one the program queues on a port of that
// direction, its length brought up to date; null and why not when the
// header may not be queued there.
MIDIHDR* HeaderToQueue(WinMmPort& port, MidiDirection direction, MidiHeader& header,
                       MidiResult& result)
{
    result = port.m_direction != direction ? kMidiInvalidHandle : CheckHeaderToQueue(header);
    MIDIHDR* service = result == kMidiNoError ? port.Find(header) : nullptr;
    if (result == kMidiNoError && service == nullptr)
        result = kMidiUnprepared;
    if (service != nullptr)
        service->dwBufferLength = header.bufferLength;
    return service;
}

// Marks the header queued for the service's call, and not queued again
// when the call fails.
template <typename Call> MidiResult Queue(MidiHeader& header, Call call)
{
    MarkHeaderQueued(header);
    const MMRESULT result = call();
    if (result != MMSYSERR_NOERROR)
        header.flags &= ~kMidiHeaderInQueue;
    return result;
}

MidiHeader* ProgramHeader(DWORD_PTR serviceHeader)
{
    return reinterpret_cast<MidiHeader*>(reinterpret_cast<MIDIHDR*>(serviceHeader)->dwUser);
}

void Deliver(WinMmPort& port, MidiCallbackMessage message, MidiHeader* header)
{
    port.m_callback(&port, message, port.m_instance, header);
}

// A returned buffer: the recorded count and the done flag are copied into
// the program's header before it hears of it.
void Returned(WinMmPort& port, DWORD_PTR serviceHeader, MidiCallbackMessage message)
{
    MidiHeader* header = ProgramHeader(serviceHeader);
    header->bytesRecorded = reinterpret_cast<MIDIHDR*>(serviceHeader)->dwBytesRecorded;
    MarkHeaderDone(*header);
    Deliver(port, message, header);
}

// The service's callbacks run on its own thread, one at a time per port; the
// service forbids calling it back from here, and nothing here does.
void CALLBACK InputCallback(HMIDIIN /*in*/, UINT message, DWORD_PTR instance, DWORD_PTR first,
                            DWORD_PTR /*second*/)
{
    WinMmPort& port = *reinterpret_cast<WinMmPort*>(instance);
    switch (message) {
    case MIM_OPEN: Deliver(port, MidiCallbackMessage::Open, nullptr); break;
    case MIM_CLOSE: Deliver(port, MidiCallbackMessage::Close, nullptr); break;
    case MIM_LONGDATA: Returned(port, first, MidiCallbackMessage::LongData); break;
    case MIM_LONGERROR: Returned(port, first, MidiCallbackMessage::LongError); break;
    default: break; // short messages are not the program's business
    }
}

void CALLBACK OutputCallback(HMIDIOUT /*out*/, UINT message, DWORD_PTR instance, DWORD_PTR first,
                             DWORD_PTR /*second*/)
{
    WinMmPort& port = *reinterpret_cast<WinMmPort*>(instance);
    switch (message) {
    case MOM_OPEN: Deliver(port, MidiCallbackMessage::Open, nullptr); break;
    case MOM_CLOSE: Deliver(port, MidiCallbackMessage::Close, nullptr); break;
    case MOM_DONE: Returned(port, first, MidiCallbackMessage::BufferDone); break;
    default: break;
    }
}

} // namespace

std::uint32_t WinMmMidiDriver::GetNumDevs(MidiDirection direction)
{
    return direction == MidiDirection::Input ? ::midiInGetNumDevs() : ::midiOutGetNumDevs();
}

std::string WinMmMidiDriver::GetUnavailableReason() const
{
    if (::midiInGetNumDevs() != 0 || ::midiOutGetNumDevs() != 0)
        return {};
    return "The system lists no MIDI ports: no MIDI interface or driver is installed.";
}

MidiResult WinMmMidiDriver::GetDevName(MidiDirection direction, std::uint32_t index,
                                       std::string& name)
{
    MMRESULT result = MMSYSERR_NOERROR;
    std::wstring wide;
    if (direction == MidiDirection::Input) {
        MIDIINCAPSW caps{};
        result = ::midiInGetDevCapsW(index, &caps, sizeof caps);
        wide = caps.szPname;
    } else {
        MIDIOUTCAPSW caps{};
        result = ::midiOutGetDevCapsW(index, &caps, sizeof caps);
        wide = caps.szPname;
    }
    if (result == MMSYSERR_NOERROR)
        name = platform::NarrowText(wide);
    return result;
}

MidiResult WinMmMidiDriver::Open(MidiDirection direction, std::uint32_t index,
                                 MidiCallback callback, void* instance, MidiHandle& handle)
{
    auto port = std::make_unique<WinMmPort>(direction, callback, instance);
    const DWORD_PTR self = reinterpret_cast<DWORD_PTR>(port.get());
    const MMRESULT result =
        direction == MidiDirection::Input
            ? ::midiInOpen(&port->in, index, reinterpret_cast<DWORD_PTR>(&InputCallback), self,
                           CALLBACK_FUNCTION)
            : ::midiOutOpen(&port->out, index, reinterpret_cast<DWORD_PTR>(&OutputCallback), self,
                            CALLBACK_FUNCTION);
    if (result != MMSYSERR_NOERROR)
        return result;
    handle = port.release();
    return kMidiNoError;
}

MidiResult WinMmMidiDriver::Close(MidiHandle handle)
{
    WinMmPort* port = PortOf(handle);
    // The service refuses while it holds buffers; the port then stays open.
    const MMRESULT result = port->IsInput() ? ::midiInClose(port->in) : ::midiOutClose(port->out);
    if (result != MMSYSERR_NOERROR)
        return result;
    // The close notification has been delivered; headers still prepared
    // die with the port.
    delete port;
    return kMidiNoError;
}

MidiResult WinMmMidiDriver::Reset(MidiHandle handle)
{
    WinMmPort* port = PortOf(handle);
    return port->IsInput() ? ::midiInReset(port->in) : ::midiOutReset(port->out);
}

MidiResult WinMmMidiDriver::PrepareHeader(MidiHandle handle, MidiHeader& header)
{
    WinMmPort* port = PortOf(handle);
    if (const MidiResult rules = PrepareMidiHeader(header); rules != kMidiNoError)
        return rules;
    auto service = std::make_unique<MIDIHDR>();
    service->lpData = reinterpret_cast<LPSTR>(header.data);
    service->dwBufferLength = header.bufferLength;
    service->dwUser = reinterpret_cast<DWORD_PTR>(&header);
    const MMRESULT result = port->IsInput()
                                ? ::midiInPrepareHeader(port->in, service.get(), sizeof(MIDIHDR))
                                : ::midiOutPrepareHeader(port->out, service.get(), sizeof(MIDIHDR));
    if (result != MMSYSERR_NOERROR) {
        UnprepareMidiHeader(header);
        return result;
    }
    const std::lock_guard guard(port->lock);
    port->headers[&header] = std::move(service);
    return kMidiNoError;
}

MidiResult WinMmMidiDriver::UnprepareHeader(MidiHandle handle, MidiHeader& header)
{
    WinMmPort* port = PortOf(handle);
    MIDIHDR* service = port->Find(header);
    if (service == nullptr)
        return UnprepareMidiHeader(header);
    const MMRESULT result = port->IsInput()
                                ? ::midiInUnprepareHeader(port->in, service, sizeof(MIDIHDR))
                                : ::midiOutUnprepareHeader(port->out, service, sizeof(MIDIHDR));
    if (result != MMSYSERR_NOERROR)
        return result;
    {
        const std::lock_guard guard(port->lock);
        port->headers.erase(&header);
    }
    return UnprepareMidiHeader(header);
}

MidiResult WinMmMidiDriver::AddBuffer(MidiHandle handle, MidiHeader& header)
{
    WinMmPort* port = PortOf(handle);
    MidiResult result = kMidiNoError;
    MIDIHDR* service = HeaderToQueue(*port, MidiDirection::Input, header, result);
    if (service == nullptr)
        return result;
    service->dwBytesRecorded = 0;
    header.bytesRecorded = 0;
    return Queue(header, [&] { return ::midiInAddBuffer(port->in, service, sizeof(MIDIHDR)); });
}

MidiResult WinMmMidiDriver::Start(MidiHandle handle)
{
    WinMmPort* port = PortOf(handle);
    return port->IsInput() ? ::midiInStart(port->in) : kMidiInvalidHandle;
}

MidiResult WinMmMidiDriver::LongMsg(MidiHandle handle, MidiHeader& header)
{
    WinMmPort* port = PortOf(handle);
    MidiResult result = kMidiNoError;
    MIDIHDR* service = HeaderToQueue(*port, MidiDirection::Output, header, result);
    if (service == nullptr)
        return result;
    return Queue(header, [&] { return ::midiOutLongMsg(port->out, service, sizeof(MIDIHDR)); });
}

std::string WinMmMidiDriver::GetErrorText(MidiResult result) const
{
    // Input and output share the service's codes; the input call knows the
    // MIDIERR_* ones as well as the general MMSYSERR_* ones.
    wchar_t text[MAXERRORLENGTH] = {};
    if (::midiInGetErrorTextW(result, text, MAXERRORLENGTH) != MMSYSERR_NOERROR &&
        ::midiOutGetErrorTextW(result, text, MAXERRORLENGTH) != MMSYSERR_NOERROR)
        return GetMidiErrorText(result);
    std::string line;
    for (const char c : platform::NarrowText(text))
        if (c != '\r' && c != '\n')
            line += c;
    return line.empty() ? GetMidiErrorText(result) : line;
}

} // namespace tarvix
