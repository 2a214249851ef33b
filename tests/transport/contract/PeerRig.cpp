#include "DriverRig.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <thread>

namespace tarvix::test {

namespace {

constexpr std::uint32_t kPeerBuffer = 256;
constexpr std::size_t kPeerBuffers = 64;

struct PeerBuffer {
    explicit PeerBuffer(std::uint32_t size) : storage(size)
    {
        header.data = storage.data();
        header.bufferLength = size;
    }
    std::vector<std::uint8_t> storage;
    MidiHeader header;
};

// The far end: an input port that gives every buffer straight back and
// keeps the bytes, an output port that sends what it is fed buffer by
// buffer as they come back.
class PeerRig : public DriverRig {
public:
    PeerRig(std::unique_ptr<IMidiDriver> program, std::unique_ptr<IMidiDriver> peer,
            std::function<std::string(const std::string&)> listedName)
        : m_program(std::move(program)), m_peer(std::move(peer)),
          m_listedName(std::move(listedName))
    {
    }

    ~PeerRig() override
    {
        for (MidiHandle handle : {m_in.load(), m_out}) {
            if (handle != nullptr) {
                m_peer->Reset(handle);
                m_peer->Close(handle);
            }
        }
    }

    bool Open(const VirtualOpener& opener, std::string& error)
    {
        MidiHandle in = nullptr;
        if (opener(MidiDirection::Input, "in", &PeerRig::Callback, this, in) != kMidiNoError ||
            opener(MidiDirection::Output, "out", &PeerRig::Callback, this, m_out) != kMidiNoError) {
            error = "the far end's ports did not open: " + m_peer->GetUnavailableReason();
            return false;
        }
        m_in = in;
        for (std::size_t i = 0; i < kPeerBuffers; ++i) {
            m_inBuffers.push_back(std::make_unique<PeerBuffer>(kPeerBuffer));
            m_outBuffers.push_back(std::make_unique<PeerBuffer>(kPeerBuffer));
            m_peer->PrepareHeader(m_in, m_inBuffers.back()->header);
            m_peer->PrepareHeader(m_out, m_outBuffers.back()->header);
            m_peer->AddBuffer(m_in, m_inBuffers.back()->header);
            m_free.push_back(m_outBuffers.back().get());
        }
        m_peer->Start(m_in);
        return true;
    }

    IMidiDriver& Driver() override { return *m_program; }
    std::string InputName() override { return m_listedName("out"); }
    std::string OutputName() override { return m_listedName("in"); }

    void Feed(const Bytes& bytes) override
    {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            PeerBuffer* buffer = nullptr;
            {
                std::unique_lock lock(m_mutex);
                m_changed.wait_for(lock, std::chrono::seconds(10),
                                   [this] { return !m_free.empty(); });
                if (m_free.empty())
                    return;
                buffer = m_free.front();
                m_free.pop_front();
            }
            const std::size_t count = std::min<std::size_t>(kPeerBuffer, bytes.size() - sent);
            std::memcpy(buffer->storage.data(), bytes.data() + sent, count);
            buffer->header.bufferLength = static_cast<std::uint32_t>(count);
            m_peer->LongMsg(m_out, buffer->header);
            sent += count;
        }
    }

    Bytes Received() override
    {
        const std::lock_guard lock(m_mutex);
        return m_received;
    }

    void RemoveFarInput() override
    {
        const MidiHandle in = m_in.exchange(nullptr);
        m_peer->Reset(in);
        m_peer->Close(in);
    }

private:
    static void Callback(MidiHandle /*handle*/, MidiCallbackMessage message, void* instance,
                         MidiHeader* header)
    {
        auto& self = *static_cast<PeerRig*>(instance);
        if (header == nullptr)
            return;
        if (message == MidiCallbackMessage::LongData) {
            {
                const std::lock_guard lock(self.m_mutex);
                self.m_received.insert(self.m_received.end(), header->data,
                                       header->data + header->bytesRecorded);
            }
            // Straight back, from the driver's own thread: allowed, the
            // contract says callbacks never block and may call in.
            if (const MidiHandle in = self.m_in.load(); in != nullptr)
                self.m_peer->AddBuffer(in, *header);
        } else if (message == MidiCallbackMessage::BufferDone) {
            const std::lock_guard lock(self.m_mutex);
            for (const auto& buffer : self.m_outBuffers) {
                if (&buffer->header == header)
                    self.m_free.push_back(buffer.get());
            }
            self.m_changed.notify_all();
        }
    }

    std::unique_ptr<IMidiDriver> m_program;
    std::unique_ptr<IMidiDriver> m_peer;
    std::function<std::string(const std::string&)> m_listedName;
    std::atomic<MidiHandle> m_in{nullptr};
    MidiHandle m_out = nullptr;
    std::vector<std::unique_ptr<PeerBuffer>> m_inBuffers;
    std::vector<std::unique_ptr<PeerBuffer>> m_outBuffers;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<PeerBuffer*> m_free;
    Bytes m_received;
};

} // namespace

std::unique_ptr<DriverRig> MakePeerRig(std::unique_ptr<IMidiDriver> program,
                                       std::unique_ptr<IMidiDriver> peer, VirtualOpener opener,
                                       std::function<std::string(const std::string&)> listedName,
                                       std::string& error)
{
    auto rig =
        std::make_unique<PeerRig>(std::move(program), std::move(peer), std::move(listedName));
    if (!rig->Open(opener, error))
        return nullptr;
    return rig;
}

} // namespace tarvix::test
