#include "ui/views/SongViewWindow.h"

#include "model/Mmt8Memory.h"
#include "ui/views/SongView.h"

#include <QLabel>
#include <QVBoxLayout>

#include <cmath>

namespace tarvix {

CSongViewWindow::CSongViewWindow(const CMmt8Memory& memory, int song, QWidget* parent)
    : CViewWindow(parent), m_memory(memory), m_song(song), m_view(new CSongView(this)),
      m_summary(new QLabel(this))
{
    setObjectName(QStringLiteral("songViewWindow"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    m_summary->setObjectName(QStringLiteral("songViewSummary"));
    layout->addWidget(m_summary);
    layout->addWidget(m_view, 1);
    connect(m_view, &CSongView::stepSelected, this,
            [this](int step) { emit stepSelected(m_song, step); });
    resize(900, 200);
    Refresh();
    m_view->setFocus();
}

void CSongViewWindow::Refresh()
{
    m_view->Model().Rebuild(m_memory, m_song);
    m_view->ModelChanged();
    SetNumberedTitle(tr("Song arrangement"), m_song, m_memory.Song(m_song).name);
    const CSongViewModel& model = m_view->Model();
    const auto seconds = static_cast<long>(std::lround(model.Seconds()));
    m_summary->setText(
        model.Tempo() == 0
            ? tr("%1 steps, %2 beats").arg(model.BlockCount()).arg(model.TotalBeats())
            : tr("%1 steps, %2 beats, %3:%4 at %5 beats per minute")
                  .arg(model.BlockCount())
                  .arg(model.TotalBeats())
                  .arg(seconds / 60)
                  .arg(seconds % 60, 2, 10, QLatin1Char('0'))
                  .arg(model.Tempo()));
}

} // namespace tarvix
