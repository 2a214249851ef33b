#pragma once

#include <QDialog>
#include <QFont>
#include <QString>

class QPlainTextEdit;

namespace tarvix {

// A resizable modal window that shows a finished text (CR LF line ends) in
// a read-only field in the given font. It has no visible button: Esc or the
// close box ends it. A text longer than the field's capacity is cut and
// says so on its last line.
class CTextReportDialog : public QDialog {
    Q_OBJECT
public:
    // Characters the text field holds at most; beyond this a plain text
    // field stops being usable.
    static constexpr qsizetype kDefaultCapacity = 16 * 1024 * 1024;
    static constexpr const char* kEmptyText = "<<Empty>>\r\n";
    static constexpr const char* kTooLongText = "\r\n<<Text is too long to display>>\r\n";

    CTextReportDialog(const QString& title, const QString& text, const QFont& font,
                      QWidget* parent = nullptr, qsizetype capacity = kDefaultCapacity);

    // What the field shows, with CR LF line ends.
    const QString& ShownText() const { return m_shownText; }
    QPlainTextEdit& TextField() { return *m_field; }

    // The text as a field of that capacity shows it: whole when it fits,
    // else its first (capacity - 100) characters and the too-long line.
    static QString FitText(const QString& text, qsizetype capacity);

private:
    QPlainTextEdit* m_field;
    QString m_shownText;
};

} // namespace tarvix
