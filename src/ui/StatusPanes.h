#pragma once

#include <QObject>

class QLabel;
class QStatusBar;
class QWidget;

namespace tarvix {

// The status bar's three panes: the memory text with the over-capacity
// icon, and the open MIDI input and output ports. The memory text is never
// cut (it is also the pane's tooltip); a port pane is as wide as its port's
// name and absent while the port is closed. A double-click on a port pane
// is announced.
class CStatusPanes : public QObject {
    Q_OBJECT
public:
    explicit CStatusPanes(QStatusBar& statusBar);

    // The used size against the device's capacity, as pane 0 shows it.
    void ShowMemory(std::uint32_t usedBytes);
    // An empty name shows the pane empty: the port is closed.
    void ShowPorts(const QString& inputName, const QString& outputName);
    // The memory pane claims the width of its whole text, the port panes
    // what their names need.
    void UpdateWidths();

    QString MemoryText() const;
    bool IsWarningShown() const;
    QString InputText() const;
    QString OutputText() const;
    QWidget* MemoryPane() const { return m_memory; }
    QWidget* InputPane() const { return m_input; }
    QWidget* OutputPane() const { return m_output; }

signals:
    void inputPaneDoubleClicked();
    void outputPaneDoubleClicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* MakePane(QStatusBar& statusBar, const char* name, QLabel*& icon, QLabel*& text);

    QWidget* m_memory = nullptr;
    QLabel* m_memoryIcon = nullptr;
    QLabel* m_memoryText = nullptr;
    QWidget* m_input = nullptr;
    QLabel* m_inputIcon = nullptr;
    QLabel* m_inputText = nullptr;
    QWidget* m_output = nullptr;
    QLabel* m_outputIcon = nullptr;
    QLabel* m_outputText = nullptr;
};

} // namespace tarvix
