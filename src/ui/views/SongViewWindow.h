#pragma once

#include "ui/views/ViewWindow.h"

class QLabel;

namespace tarvix {

class CMmt8Memory;
class CSongView;

// A window showing one song as blocks along a time line. Read-only; a block
// chosen in it is announced so the list can select its step.
class CSongViewWindow : public CViewWindow {
    Q_OBJECT
public:
    CSongViewWindow(const CMmt8Memory& memory, int song, QWidget* parent = nullptr);

    int Song() const { return m_song; }
    CSongView& View() { return *m_view; }
    void Refresh();

signals:
    void stepSelected(int song, int step);

private:
    const CMmt8Memory& m_memory;
    int m_song;
    CSongView* m_view;
    QLabel* m_summary;
};

} // namespace tarvix
