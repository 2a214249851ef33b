#include "framework/HyperlinkLabel.h"

namespace tarvix {

CHyperlinkLabel::CHyperlinkLabel(const QString& text, const QUrl& target, QWidget* parent)
    : QLabel(parent)
{
    setText(QStringLiteral("<a href=\"%1\">%2</a>")
                .arg(target.toString(QUrl::FullyEncoded).toHtmlEscaped(), text.toHtmlEscaped()));
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::TextBrowserInteraction);
    setOpenExternalLinks(true);
}

} // namespace tarvix
