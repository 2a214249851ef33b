#pragma once

#include <QMessageBox>
#include <QString>

namespace tarvix {

// Every message box of the program goes through here, so tests can answer
// them: a scripted answer is returned without showing anything.
class CMessageBox {
public:
    using Button = QMessageBox::StandardButton;

    // Shows text (a trailing newline dropped) modally over parent. With
    // NoIcon the warning icon is used when a caption is given, the error
    // icon otherwise; an empty caption is the application's name.
    static Button Report(QWidget* parent, const QString& text, const QString& caption = {},
                         QMessageBox::Icon icon = QMessageBox::NoIcon,
                         QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                         Button defaultButton = QMessageBox::NoButton);

    // Answers queued for the next boxes, in order.
    static void SetNextAnswer(Button answer);
    // Answers every box that has no queued answer without showing it, so an
    // unexpected box cannot block a test; NoButton shows boxes again.
    static void SetUnattendedAnswer(Button answer);
    // What the last box said, shown or answered by script.
    static QString LastText();
    static QString LastCaption();
    static QMessageBox::Icon LastIcon();
    static Button LastDefaultButton();
    static int ShownCount();
    static void ResetScript();
};

} // namespace tarvix
