#include "framework/TextReportDialog.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvix {

namespace {
constexpr QSize kInitialSize(640, 480);
// Room kept for the too-long line when the text is cut.
constexpr qsizetype kCutMargin = 100;
} // namespace

CTextReportDialog::CTextReportDialog(const QString& title, const QString& text, const QFont& font,
                                     QWidget* parent, qsizetype capacity)
    : QDialog(parent), m_field(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("textReportDialog"));
    setWindowTitle(title);
    setModal(true);
    setSizeGripEnabled(true);

    m_field->setObjectName(QStringLiteral("reportText"));
    m_field->setReadOnly(true);
    m_field->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_field->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_field->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_field->setFont(font);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_field);

    // Esc cancels as usual; the button it stands for is kept out of sight.
    auto* cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancelButton"));
    cancel->setAutoDefault(false);
    cancel->hide();
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    m_shownText = text.isEmpty() ? QString::fromLatin1(kEmptyText) : FitText(text, capacity);
    QString display = m_shownText;
    display.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_field->setPlainText(display);
    m_field->moveCursor(QTextCursor::Start);
    m_field->setFocus(Qt::OtherFocusReason);

    resize(kInitialSize);
    setMinimumSize(kInitialSize);
}

QString CTextReportDialog::FitText(const QString& text, qsizetype capacity)
{
    // The field is asked for one character more than the text and may
    // grant less.
    const qsizetype accepted = std::min(text.size() + 1, std::max<qsizetype>(capacity, 0));
    if (accepted >= text.size())
        return text;
    return text.left(std::max<qsizetype>(accepted - kCutMargin, 0)) +
           QString::fromLatin1(kTooLongText);
}

} // namespace tarvix
