#include "ui/views/SongView.h"

#include "ui/DeviceText.h"
#include "ui/views/PianoRollPainter.h"
#include "ui/views/TimeLine.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tarvix {

namespace {
constexpr int kRulerHeight = 20;
constexpr int kBlockHeight = 64;
constexpr int kMargin = 6;
constexpr int kEmptyPartWidth = 6;
constexpr double kMinPixelsPerBeat = 1.0;
constexpr double kMaxPixelsPerBeat = 120.0;

// Steps playing the same part share a colour, so repeats show at a glance.
QColor PartColour(int part)
{
    return QColor::fromHsv((part * 47) % 360, 70, 235);
}

} // namespace

class CSongCanvas : public QWidget {
public:
    explicit CSongCanvas(CSongView& view) : QWidget(&view), m_view(view)
    {
        setObjectName(QStringLiteral("songCanvas"));
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override
    {
        const int block = m_view.BlockAt(event->position().toPoint());
        if (block >= 0)
            m_view.Choose(m_view.m_model.Blocks()[static_cast<std::size_t>(block)].step);
        m_view.setFocus(Qt::MouseFocusReason);
    }
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::ToolTip) {
            auto* help = static_cast<QHelpEvent*>(event);
            const int block = m_view.BlockAt(help->pos());
            if (block < 0) {
                QToolTip::hideText();
                event->ignore();
            } else {
                QToolTip::showText(help->globalPos(),
                                   FromDeviceText(DescribeSongBlock(
                                       m_view.m_model.Blocks()[static_cast<std::size_t>(block)])),
                                   this);
            }
            return true;
        }
        return QWidget::event(event);
    }

private:
    void PaintBlock(QPainter& painter, const CSongViewModel::Block& block, const QRect& rect);

    CSongView& m_view;
};

void CSongCanvas::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const QRect exposed = event->rect();
    painter.fillRect(exposed, palette().base());
    const double ppb = m_view.m_pixelsPerBeat;
    const CSongViewModel& model = m_view.m_model;

    // Bar lines and numbers over the song's length.
    painter.setPen(palette().text().color());
    const std::uint32_t bars = (model.TotalBeats() + kBeatsPerBar - 1) / kBeatsPerBar;
    const int labelWidth = fontMetrics().horizontalAdvance(QStringLiteral("0000"));
    const std::uint32_t every = std::max<std::uint32_t>(
        1, static_cast<std::uint32_t>(std::ceil((labelWidth + 4) / (ppb * kBeatsPerBar))));
    const auto firstBar = static_cast<std::uint32_t>(
        std::max(0.0, (exposed.left() - kMargin) / (ppb * kBeatsPerBar)));
    for (std::uint32_t bar = firstBar / every * every; bar <= bars; bar += every) {
        const int x = kMargin + static_cast<int>(bar * kBeatsPerBar * ppb);
        if (x > exposed.right() + labelWidth)
            break;
        painter.drawLine(x, kRulerHeight - 6, x, kRulerHeight);
        painter.drawText(QRect(x + 2, 0, labelWidth + 8, kRulerHeight - 4),
                         Qt::AlignLeft | Qt::AlignVCenter, QString::number(bar + 1));
    }

    const auto firstBeat =
        static_cast<std::uint32_t>(std::max(0.0, (exposed.left() - kMargin) / ppb));
    for (int i = model.FirstBlockFrom(firstBeat); i < model.BlockCount(); ++i) {
        const QRect rect = m_view.BlockRect(i);
        if (rect.left() > exposed.right())
            break;
        if (rect.intersects(exposed))
            PaintBlock(painter, model.Blocks()[static_cast<std::size_t>(i)], rect);
    }
}

void CSongCanvas::PaintBlock(QPainter& painter, const CSongViewModel::Block& block,
                             const QRect& rect)
{
    const bool selected = block.step == m_view.m_selected;
    painter.fillRect(rect, block.beats == 0 ? QColor(0xD8, 0xD8, 0xD8) : PartColour(block.part));
    // Eight lamps along the bottom: the tracks this step plays.
    const int lampWidth = std::max(1, (rect.width() - 4) / 8);
    for (int track = 0; track < 8 && rect.width() > 16; ++track) {
        const QRect lamp(rect.left() + 2 + track * lampWidth, rect.bottom() - 7,
                         std::max(1, lampWidth - 1), 5);
        if (block.trackMask & (1u << track))
            painter.fillRect(lamp, PianoRollPainter::TrackColour(track));
        else
            painter.fillRect(lamp, QColor(0xFF, 0xFF, 0xFF, 160));
    }
    painter.setPen(selected ? QPen(palette().highlight().color(), 3)
                            : QPen(QColor(0x50, 0x50, 0x50)));
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
    if (rect.width() > 16) {
        painter.setPen(QColor(0x10, 0x10, 0x10));
        const QRect text = rect.adjusted(4, 2, -3, -10);
        painter.drawText(
            text, Qt::AlignLeft | Qt::AlignTop,
            fontMetrics().elidedText(FromDeviceText(block.label), Qt::ElideRight, text.width()));
    }
}

CSongView::CSongView(QWidget* parent) : QScrollArea(parent), m_canvas(new CSongCanvas(*this))
{
    setObjectName(QStringLiteral("songView"));
    setWidget(m_canvas);
    setWidgetResizable(false);
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    ModelChanged();
}

QWidget* CSongView::Canvas() const
{
    return m_canvas;
}

void CSongView::ModelChanged()
{
    const int blocks = m_model.BlockCount();
    const int right = blocks == 0 ? 0 : BlockRect(blocks - 1).right();
    m_canvas->resize(std::max(right + kMargin, viewport()->width()),
                     kRulerHeight + kBlockHeight + 2 * kMargin);
    setMinimumHeight(m_canvas->height() + horizontalScrollBar()->sizeHint().height() +
                     2 * frameWidth());
    if (m_selected >= blocks)
        m_selected = blocks - 1;
    m_canvas->update();
}

void CSongView::SetSelectedStep(int step)
{
    if (step == m_selected)
        return;
    const int old = m_selected;
    m_selected = step;
    for (int block : {old, step})
        if (block >= 0 && block < m_model.BlockCount())
            m_canvas->update(BlockRect(block).adjusted(-2, -2, 2, 2));
    if (step >= 0 && step < m_model.BlockCount()) {
        const QRect rect = BlockRect(step);
        ensureVisible(rect.center().x(), rect.center().y(), rect.width() / 2 + kMargin, 0);
    }
}

void CSongView::Zoom(double factor)
{
    m_pixelsPerBeat = std::clamp(m_pixelsPerBeat * factor, kMinPixelsPerBeat, kMaxPixelsPerBeat);
    ModelChanged();
}

QRect CSongView::BlockRect(int block) const
{
    const CSongViewModel::Block& item = m_model.Blocks().at(static_cast<std::size_t>(block));
    const int left = kMargin + static_cast<int>(std::lround(item.startBeat * m_pixelsPerBeat));
    const int right =
        kMargin + static_cast<int>(std::lround((item.startBeat + item.beats) * m_pixelsPerBeat));
    return {left, kRulerHeight + kMargin / 2, std::max(kEmptyPartWidth, right - left),
            kBlockHeight};
}

int CSongView::BlockAt(QPoint canvasPos) const
{
    int found = -1;
    for (int i = 0; i < m_model.BlockCount(); ++i) {
        if (!BlockRect(i).contains(canvasPos))
            continue;
        found = i;
        if (m_model.Blocks()[static_cast<std::size_t>(i)].beats == 0)
            break;
    }
    return found;
}

void CSongView::Choose(int step)
{
    if (step < 0 || step >= m_model.BlockCount())
        return;
    SetSelectedStep(step);
    emit stepSelected(step);
}

void CSongView::keyPressEvent(QKeyEvent* event)
{
    const int last = m_model.BlockCount() - 1;
    switch (event->key()) {
    case Qt::Key_Left: Choose(std::max(0, m_selected - 1)); return;
    case Qt::Key_Right: Choose(std::min(last, m_selected + 1)); return;
    case Qt::Key_Home: Choose(0); return;
    case Qt::Key_End: Choose(last); return;
    case Qt::Key_Plus:
    case Qt::Key_Equal: Zoom(1.5); return;
    case Qt::Key_Minus: Zoom(1.0 / 1.5); return;
    default: break;
    }
    QScrollArea::keyPressEvent(event);
}

void CSongView::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier) {
        const int steps = event->angleDelta().y();
        if (steps != 0)
            Zoom(steps > 0 ? 1.25 : 0.8);
        event->accept();
        return;
    }
    QScrollBar* time = horizontalScrollBar();
    time->setValue(time->value() - event->angleDelta().y() - event->angleDelta().x());
    event->accept();
}

} // namespace tarvix
