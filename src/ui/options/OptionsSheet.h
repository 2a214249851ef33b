#pragma once

#include <QDialog>

#include <array>

class QPushButton;
class QTabWidget;

namespace tarvix {

class CGeneralPage;
class CMidiPage;
class COptionsPage;
class CSettings;
class IMidiPorts;

// The Options dialog: the General and the MIDI page. What the user applies
// goes into the settings object at once (the store only sees it at exit),
// and applying the MIDI page reopens the ports.
class COptionsSheet : public QDialog {
    Q_OBJECT
public:
    static constexpr int kGeneralPage = 0;
    static constexpr int kMidiPage = 1;

    // Opens the sheet modally at startPage; a focusControl other than 0
    // is the control that page focuses when it first shows.
    static int Show(QWidget* owner, CSettings& settings, IMidiPorts& ports, int startPage,
                    int focusControl);

    COptionsSheet(QWidget* owner, CSettings& settings, IMidiPorts& ports, int startPage,
                  int focusControl);
    ~COptionsSheet() override;

    CGeneralPage& General() const { return *m_general; }
    CMidiPage& Midi() const { return *m_midi; }
    QTabWidget& Tabs() const { return *m_tabs; }
    QPushButton* OkButton() const { return m_ok; }
    QPushButton* ApplyButton() const { return m_apply; }
    QPushButton* CancelButton() const { return m_cancel; }

    // The page being shown, as through its tab; false when the page left
    // refused (its message then shown).
    bool SetActivePage(int page);
    // Leaves the page shown and applies every page shown so far; false
    // when the page shown refused to be left.
    bool ApplyChanges();

private:
    std::array<COptionsPage*, 2> Pages() const;
    COptionsPage* Page(int index) const;
    void OnTabChanged(int index);
    void OnOk();
    void OnApply();

    CGeneralPage* m_general = nullptr;
    CMidiPage* m_midi = nullptr;
    QTabWidget* m_tabs = nullptr;
    QPushButton* m_ok = nullptr;
    QPushButton* m_apply = nullptr;
    QPushButton* m_cancel = nullptr;
    int m_activePage = 0;
};

} // namespace tarvix
