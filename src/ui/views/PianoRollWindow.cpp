#include "ui/views/PianoRollWindow.h"

#include "model/Mmt8Memory.h"
#include "ui/views/PianoRollView.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>

namespace tarvix {

namespace {
QIcon Swatch(const QColor& colour)
{
    QPixmap pixmap(12, 12);
    pixmap.fill(colour);
    QPainter painter(&pixmap);
    painter.setPen(colour.darker(150));
    painter.drawRect(0, 0, 11, 11);
    return QIcon(pixmap);
}

} // namespace

CPianoRollWindow::CPianoRollWindow(const CMmt8Memory& memory, int part, QWidget* parent)
    : CViewWindow(parent), m_memory(memory), m_part(part), m_view(new CPianoRollView(this)),
      m_summary(new QLabel(this))
{
    setObjectName(QStringLiteral("pianoRollWindow"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    auto* legend = new QHBoxLayout;
    legend->addWidget(new QLabel(tr("Tracks:"), this));
    for (int track = 0; track < kTracksPerPart; ++track) {
        auto* box = new QCheckBox(QStringLiteral("&%1").arg(track + 1), this);
        box->setObjectName(QStringLiteral("pianoRollTrack%1").arg(track + 1));
        box->setIcon(Swatch(PianoRollPainter::TrackColour(track)));
        box->setChecked(true);
        box->setFocusPolicy(Qt::TabFocus);
        connect(box, &QCheckBox::toggled, this, [this, track](bool shown) {
            m_view->Model().SetTrackVisible(track, shown);
            m_view->ModelChanged();
            UpdateTexts();
        });
        legend->addWidget(box);
        m_boxes[static_cast<std::size_t>(track)] = box;
    }
    legend->addStretch(1);
    m_summary->setObjectName(QStringLiteral("pianoRollSummary"));
    legend->addWidget(m_summary);
    layout->addLayout(legend);
    layout->addWidget(m_view, 1);
    resize(900, 560);
    Refresh();
    m_view->setFocus();
}

void CPianoRollWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // The first look shows the whole part and its notes' range.
    if (!m_fitted) {
        m_fitted = true;
        m_view->FitToWindow();
    }
}

void CPianoRollWindow::Refresh()
{
    const CMmt8Part& part = m_memory.Part(m_part);
    m_view->Model().Rebuild(part);
    m_view->SetPart(&part);
    m_view->ModelChanged();
    UpdateTexts();
}

void CPianoRollWindow::UpdateTexts()
{
    const CMmt8Part& part = m_memory.Part(m_part);
    SetNumberedTitle(tr("Piano roll"), m_part, part.name);
    const CPianoRollModel& model = m_view->Model();
    for (int track = 0; track < kTracksPerPart; ++track) {
        QCheckBox* box = m_boxes[static_cast<std::size_t>(track)];
        const int channel = part.tracks[static_cast<std::size_t>(track)].channel;
        box->setToolTip(tr("Track %1: %2 notes, channel %3")
                            .arg(track + 1)
                            .arg(model.TrackNoteCount(track))
                            .arg(channel == 0 ? tr("unchanged") : QString::number(channel)));
        // An empty track is greyed in the legend but can still be ticked.
        box->setStyleSheet(model.TrackHasEvents(track) ? QString() : QStringLiteral("color: gray"));
    }
    m_summary->setText(tr("%1 beats, %2 notes, %3 other events shown")
                           .arg(part.beats)
                           .arg(model.VisibleNoteCount())
                           .arg(model.VisibleLaneEventCount()));
}

} // namespace tarvix
