#pragma once

#include <QWidget>

namespace tarvix {

// One page of the Options sheet. Its controls are filled when the page is
// first shown, from the page's own copy of the settings; leaving the page
// reads them back into the copy, and applying writes the copy into the
// settings. Each page can name one control to focus when it is first shown.
class COptionsPage : public QWidget {
    Q_OBJECT
public:
    COptionsPage(const QString& title, int focusControl, QWidget* parent = nullptr);

    const QString& Title() const { return m_title; }
    void SetFocusControl(int controlId) { m_focusControl = controlId; }

    // On first activation: fills the controls and asks for the focus.
    void Create();
    bool IsCreated() const { return m_created; }
    // False keeps the page open; the user has been told why.
    virtual bool Leave() = 0;
    virtual void Apply() = 0;

    // The control with that identifier, or null.
    QWidget* Control(int controlId) const;

signals:
    // Any change the user made; the sheet's Apply button comes alive.
    void changed();

protected:
    virtual void FillControls() = 0;
    // Gives a widget its identifier for Control() and the focus request.
    static void SetControlId(QWidget& control, int controlId);
    void customEvent(QEvent* event) override;

private:
    QString m_title;
    int m_focusControl;
    bool m_created = false;
};

} // namespace tarvix
