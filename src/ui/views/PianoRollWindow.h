#pragma once

#include "ui/views/ViewWindow.h"

#include <array>

class QCheckBox;
class QLabel;

namespace tarvix {

class CMmt8Memory;
class CPianoRollView;

// A window showing one part as a piano roll, with a legend that shows or
// hides each track. Read-only; Refresh draws it again from the document.
class CPianoRollWindow : public CViewWindow {
    Q_OBJECT
public:
    CPianoRollWindow(const CMmt8Memory& memory, int part, QWidget* parent = nullptr);

    int Part() const { return m_part; }
    CPianoRollView& View() { return *m_view; }
    QCheckBox* TrackBox(int track) const { return m_boxes.at(static_cast<std::size_t>(track)); }
    void Refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void UpdateTexts();

    const CMmt8Memory& m_memory;
    int m_part;
    CPianoRollView* m_view;
    std::array<QCheckBox*, 8> m_boxes{};
    QLabel* m_summary;
    bool m_fitted = false;
};

} // namespace tarvix
