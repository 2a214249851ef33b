#pragma once

#include "ui/views/SongViewModel.h"

#include <QScrollArea>

namespace tarvix {

class CSongCanvas;

// The picture of a song: its steps as blocks along a time line of bars,
// each labelled with its part and showing which tracks play. Clicking a
// block, or moving with Left, Right, Home and End, selects its step; + and
// - (or Ctrl and the wheel) zoom.
class CSongView : public QScrollArea {
    Q_OBJECT
public:
    explicit CSongView(QWidget* parent = nullptr);

    CSongViewModel& Model() { return m_model; }
    // The model changed: size and drawing.
    void ModelChanged();
    // -1 for none; no signal.
    void SetSelectedStep(int step);
    int SelectedStep() const { return m_selected; }
    void Zoom(double factor);
    // Where a block is drawn on the canvas.
    QRect BlockRect(int block) const;
    // The block under a canvas point, or -1; a part without beats is a
    // narrow block drawn over its neighbours and wins.
    int BlockAt(QPoint canvasPos) const;
    QWidget* Canvas() const;

signals:
    void stepSelected(int step);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    friend class CSongCanvas;
    void Choose(int step);

    CSongViewModel m_model;
    CSongCanvas* m_canvas;
    double m_pixelsPerBeat = 12.0;
    int m_selected = -1;
};

} // namespace tarvix
