#include "ui/views/SongViewModel.h"

#include "model/ListCells.h"
#include "model/Mmt8Memory.h"
#include "model/TextBuilder.h"
#include "ui/views/TimeLine.h"

#include <algorithm>

namespace tarvix {

void CSongViewModel::Rebuild(const CMmt8Memory& memory, int song)
{
    m_blocks.clear();
    m_totalBeats = 0;
    m_tempo = 0;
    if (!CMmt8Memory::IsSong(song))
        return;
    const CMmt8Song& record = memory.Song(song);
    m_tempo = record.tempo;
    for (std::size_t i = 0; i < record.steps.size(); ++i) {
        const Mmt8Step& step = record.steps[i];
        Block block;
        block.step = static_cast<int>(i);
        block.part = step.part;
        block.trackMask = step.trackMask;
        block.startBeat = m_totalBeats;
        block.label = FormatText("%02u", unsigned{step.part});
        if (CMmt8Memory::IsPart(step.part)) {
            block.beats = memory.Part(step.part).beats;
            // The list's own text: a name made safe for one line.
            const std::string name = GetListCellText(memory, ListKind::Parts, 0, step.part, 1);
            if (!name.empty())
                block.label += "  " + name;
        }
        m_totalBeats += block.beats;
        m_blocks.push_back(std::move(block));
    }
}

double CSongViewModel::Seconds() const
{
    return m_tempo == 0 ? 0.0 : m_totalBeats * 60.0 / m_tempo;
}

int CSongViewModel::FirstBlockFrom(std::uint32_t beat) const
{
    const auto found = std::lower_bound(
        m_blocks.begin(), m_blocks.end(), beat,
        [](const Block& block, std::uint32_t at) { return block.startBeat + block.beats < at; });
    return static_cast<int>(found - m_blocks.begin());
}

std::string DescribeSongBlock(const CSongViewModel::Block& block)
{
    std::string tracks;
    for (int track = 0; track < 8; ++track)
        if (block.trackMask & (1u << track))
            tracks += FormatText(" %d", track + 1);
    if (tracks.empty())
        tracks = " none";
    else if (block.trackMask == 0xFF)
        tracks = " all";
    return FormatText("Step %d: part %s, %u beats, tracks%s, from %s", block.step + 1,
                      block.label.c_str(), block.beats, tracks.c_str(),
                      DescribePosition(block.startBeat * kClocksPerBeat).c_str());
}

} // namespace tarvix
