#pragma once

#include <QDialog>
#include <QString>

namespace tarvix {

class CUpDownEdit;

// What a one-number dialog says and accepts.
struct NumberDialogSetup {
    QString title;
    QString label;
    int minimum = 0;
    int maximum = 0;
    // Shown when OK finds no integer within the range.
    QString invalidText;
    QString note; // under the field; none when empty
};

// A dialog that edits one number in a field with up and down arrows. OK
// with anything but an integer within the range reports it, selects the
// field and stays open.
class CNumberDialog : public QDialog {
    Q_OBJECT
public:
    CNumberDialog(const NumberDialogSetup& setup, int value, QWidget* parent = nullptr);

    // The accepted number; meaningful after OK.
    int Value() const { return m_value; }
    CUpDownEdit& Field() { return *m_field; }

    void accept() override;

private:
    NumberDialogSetup m_setup;
    CUpDownEdit* m_field;
    int m_value;
};

} // namespace tarvix
