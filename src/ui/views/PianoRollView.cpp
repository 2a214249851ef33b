#include "ui/views/PianoRollView.h"

#include "model/Mmt8Part.h"
#include "ui/DeviceText.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tarvix {

namespace {
constexpr double kMinPixelsPerBeat = 0.5;
constexpr double kMaxPixelsPerBeat = 400.0;
constexpr int kMinRowHeight = 3;
constexpr int kMaxRowHeight = 30;
constexpr double kZoomStep = 1.5;
constexpr int kLanePickPixels = 4;

// Shows text as the tooltip of widget, or hides a shown one.
bool ShowToolTip(QEvent* event, const QString& text, QWidget* widget)
{
    auto* help = static_cast<QHelpEvent*>(event);
    if (text.isEmpty()) {
        QToolTip::hideText();
        event->ignore();
    } else {
        QToolTip::showText(help->globalPos(), text, widget);
    }
    return true;
}
} // namespace

// The ruler, the keyboard and the lane: strips that scroll along one axis
// with the notes.
class CRollStrip : public QWidget {
public:
    enum class Role { Ruler, Keys, Lane };

    CRollStrip(CPianoRollView& view, Role role) : QWidget(&view), m_view(view), m_role(role)
    {
        setObjectName(role == Role::Ruler  ? QStringLiteral("pianoRollRuler")
                      : role == Role::Keys ? QStringLiteral("pianoRollKeys")
                                           : QStringLiteral("pianoRollLane"));
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

    int lastDrawn = 0;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter painter(this);
        const int left = m_view.m_keysWidth;
        switch (m_role) {
        case Role::Ruler:
            PianoRollPainter::PaintRuler(painter, m_view.m_model, m_view.m_scale, event->rect(),
                                         left, height());
            painter.fillRect(QRect(0, 0, left, height()), palette().window());
            break;
        case Role::Keys:
            PianoRollPainter::PaintKeys(painter, m_view.m_scale, event->rect(), width());
            break;
        case Role::Lane:
            lastDrawn = PianoRollPainter::PaintLane(painter, m_view.m_model, m_view.m_scale,
                                                    event->rect(), left, height());
            painter.fillRect(QRect(0, 0, left, height()), palette().window());
            painter.setPen(palette().windowText().color());
            painter.drawText(QRect(2, 0, left - 4, height()), Qt::AlignCenter | Qt::TextWordWrap,
                             tr("Ctrl\nProg\nBend"));
            break;
        }
    }

    bool event(QEvent* event) override
    {
        if (m_role == Role::Lane && event->type() == QEvent::ToolTip)
            return ShowToolTip(event, m_view.LaneToolTipAt(static_cast<QHelpEvent*>(event)->pos()),
                               this);
        return QWidget::event(event);
    }

private:
    CPianoRollView& m_view;
    Role m_role;
};

CPianoRollView::CPianoRollView(QWidget* parent)
    : QAbstractScrollArea(parent), m_ruler(new CRollStrip(*this, CRollStrip::Role::Ruler)),
      m_keys(new CRollStrip(*this, CRollStrip::Role::Keys)),
      m_lane(new CRollStrip(*this, CRollStrip::Role::Lane))
{
    setObjectName(QStringLiteral("pianoRollView"));
    viewport()->setObjectName(QStringLiteral("pianoRollNotes"));
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    m_keysWidth = fontMetrics().horizontalAdvance(QStringLiteral("C#-1")) + 14;
    m_rulerHeight = fontMetrics().height() + 8;
    setViewportMargins(m_keysWidth, m_rulerHeight, 0, m_laneHeight);
    horizontalScrollBar()->setObjectName(QStringLiteral("pianoRollTimeBar"));
    verticalScrollBar()->setObjectName(QStringLiteral("pianoRollPitchBar"));
    ModelChanged();
}

QWidget* CPianoRollView::Ruler() const
{
    return m_ruler;
}
QWidget* CPianoRollView::Keys() const
{
    return m_keys;
}
QWidget* CPianoRollView::Lane() const
{
    return m_lane;
}

void CPianoRollView::ModelChanged()
{
    UpdateScrollBars();
    viewport()->update();
    m_ruler->update();
    m_lane->update();
}

void CPianoRollView::SyncScale()
{
    m_scale.scrollX = horizontalScrollBar()->value();
    m_scale.scrollY = verticalScrollBar()->value();
}

void CPianoRollView::UpdateScrollBars()
{
    const QSize area = viewport()->size();
    QScrollBar* time = horizontalScrollBar();
    QScrollBar* pitch = verticalScrollBar();
    // Scrolling while the ranges change would move stale pixels: the whole
    // view is drawn anew instead.
    const RedrawAll redraw(*this);
    time->setRange(0, std::max(0, m_scale.ContentWidth(m_model.LengthClocks()) - area.width()));
    time->setPageStep(std::max(1, area.width()));
    time->setSingleStep(std::max(1, static_cast<int>(m_scale.pixelsPerBeat)));
    pitch->setRange(0, std::max(0, m_scale.ContentHeight() - area.height()));
    pitch->setPageStep(std::max(1, area.height()));
    pitch->setSingleStep(m_scale.rowHeight);
    SyncScale();
}

void CPianoRollView::PlaceStrips()
{
    const QRect area = viewport()->geometry();
    m_ruler->setGeometry(area.left() - m_keysWidth, area.top() - m_rulerHeight,
                         area.width() + m_keysWidth, m_rulerHeight);
    m_keys->setGeometry(area.left() - m_keysWidth, area.top(), m_keysWidth, area.height());
    m_lane->setGeometry(area.left() - m_keysWidth, area.bottom() + 1, area.width() + m_keysWidth,
                        m_laneHeight);
}

void CPianoRollView::ZoomTime(double factor, int anchorX)
{
    const double anchorClock =
        (anchorX + m_scale.scrollX) * double{kClocksPerBeat} / m_scale.pixelsPerBeat;
    m_scale.pixelsPerBeat =
        std::clamp(m_scale.pixelsPerBeat * factor, kMinPixelsPerBeat, kMaxPixelsPerBeat);
    UpdateScrollBars();
    const double newX = anchorClock * m_scale.pixelsPerBeat / kClocksPerBeat - anchorX;
    {
        const RedrawAll redraw(*this);
        horizontalScrollBar()->setValue(static_cast<int>(std::lround(newX)));
    }
    SyncScale();
    ModelChanged();
    emit zoomChanged();
}

void CPianoRollView::ZoomPitch(int rowHeight)
{
    const int centre = m_scale.YToPitch(viewport()->height() / 2);
    m_scale.rowHeight = std::clamp(rowHeight, kMinRowHeight, kMaxRowHeight);
    UpdateScrollBars();
    CentrePitch(centre);
    m_keys->update();
    emit zoomChanged();
}

void CPianoRollView::CentrePitch(int pitch)
{
    const int y =
        (127 - pitch) * m_scale.rowHeight + m_scale.rowHeight / 2 - viewport()->height() / 2;
    {
        const RedrawAll redraw(*this);
        verticalScrollBar()->setValue(y);
    }
    SyncScale();
    viewport()->update();
    m_keys->update();
}

void CPianoRollView::FitToWindow()
{
    const QSize area = viewport()->size();
    const double beats = static_cast<double>(m_model.LengthClocks()) / kClocksPerBeat;
    m_scale.pixelsPerBeat =
        std::clamp((area.width() - 2) / beats, kMinPixelsPerBeat, kMaxPixelsPerBeat);
    // The notes' range with a little room above and below.
    const int span = m_model.HighestPitch() - m_model.LowestPitch() + 5;
    m_scale.rowHeight = std::clamp(area.height() / span, kMinRowHeight, kMaxRowHeight);
    UpdateScrollBars();
    {
        const RedrawAll redraw(*this);
        horizontalScrollBar()->setValue(0);
    }
    CentrePitch((m_model.LowestPitch() + m_model.HighestPitch() + 1) / 2);
    ModelChanged();
    emit zoomChanged();
}

QString CPianoRollView::NoteToolTipAt(QPoint viewportPos) const
{
    if (m_part == nullptr)
        return {};
    const int x = viewportPos.x();
    if (x < 0 || m_scale.ClockToX(0) > x)
        return {};
    const CPianoRollModel::Note* note =
        m_model.NoteAt(m_scale.XToClock(x), m_scale.YToPitch(viewportPos.y()));
    if (note == nullptr)
        return {};
    const CMmt8Event* event = FindRollEvent(*m_part, note->track, note->index);
    return event ? FromDeviceText(DescribeRollEvent(*event, note->track)) : QString();
}

QString CPianoRollView::LaneToolTipAt(QPoint lanePos) const
{
    if (m_part == nullptr || lanePos.x() < m_keysWidth)
        return {};
    const std::uint32_t time = m_scale.XToClock(lanePos.x() - m_keysWidth);
    const auto tolerance = static_cast<std::uint32_t>(
        std::ceil(kLanePickPixels * kClocksPerBeat / m_scale.pixelsPerBeat));
    const CPianoRollModel::LaneEvent* found = m_model.LaneEventNear(time, tolerance);
    if (found == nullptr)
        return {};
    const CMmt8Event* event = FindRollEvent(*m_part, found->track, found->index);
    return event ? FromDeviceText(DescribeRollEvent(*event, found->track)) : QString();
}

void CPianoRollView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    m_lastDrawn = PianoRollPainter::PaintNotes(painter, m_model, m_scale, event->rect());
}

void CPianoRollView::scrollContentsBy(int dx, int dy)
{
    SyncScale();
    if (m_redrawAll != 0) {
        // A zoom or new ranges: every pixel changes.
        viewport()->update();
        m_ruler->update();
        m_keys->update();
        m_lane->update();
        return;
    }
    viewport()->scroll(dx, dy);
    if (dx != 0) {
        const QRect timePart(m_keysWidth, 0, m_ruler->width() - m_keysWidth, m_rulerHeight);
        m_ruler->scroll(dx, 0, timePart);
        m_lane->scroll(dx, 0, QRect(m_keysWidth, 0, m_lane->width() - m_keysWidth, m_laneHeight));
    }
    if (dy != 0)
        m_keys->scroll(0, dy);
}

void CPianoRollView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    PlaceStrips();
    UpdateScrollBars();
}

bool CPianoRollView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip)
        return ShowToolTip(event, NoteToolTipAt(static_cast<QHelpEvent*>(event)->pos()),
                           viewport());
    return QAbstractScrollArea::viewportEvent(event);
}

void CPianoRollView::keyPressEvent(QKeyEvent* event)
{
    const bool control = event->modifiers() & Qt::ControlModifier;
    const int centre = viewport()->width() / 2;
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        if (control)
            ZoomPitch(m_scale.rowHeight + 2);
        else
            ZoomTime(kZoomStep, centre);
        return;
    case Qt::Key_Minus:
        if (control)
            ZoomPitch(m_scale.rowHeight - 2);
        else
            ZoomTime(1.0 / kZoomStep, centre);
        return;
    case Qt::Key_0: FitToWindow(); return;
    case Qt::Key_Home: horizontalScrollBar()->setValue(0); return;
    case Qt::Key_End: horizontalScrollBar()->setValue(horizontalScrollBar()->maximum()); return;
    case Qt::Key_Left:
        horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
        return;
    case Qt::Key_Right:
        horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        return;
    case Qt::Key_Up:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
        return;
    case Qt::Key_Down:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        return;
    case Qt::Key_PageUp:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
        return;
    case Qt::Key_PageDown:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        return;
    default: break;
    }
    QAbstractScrollArea::keyPressEvent(event);
}

void CPianoRollView::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y();
    if (event->modifiers() & Qt::ControlModifier) {
        if (steps != 0)
            ZoomTime(steps > 0 ? 1.25 : 0.8, static_cast<int>(event->position().x()));
        event->accept();
        return;
    }
    if (event->modifiers() & Qt::ShiftModifier) {
        QScrollBar* time = horizontalScrollBar();
        time->setValue(time->value() - steps);
        event->accept();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

} // namespace tarvix
