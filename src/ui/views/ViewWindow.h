#pragma once

#include <QWidget>

#include <string>

namespace tarvix {

// A read-only window of its own beside the frame, showing one part or song:
// it is deleted once closed, and Escape closes it.
class CViewWindow : public QWidget {
    Q_OBJECT
public:
    explicit CViewWindow(QWidget* parent);

protected:
    // "<what> - 07  <name>".
    void SetNumberedTitle(const QString& what, int number, const std::string& name);
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace tarvix
