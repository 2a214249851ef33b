#pragma once

#include <QLabel>
#include <QUrl>

namespace tarvix {

// A label showing one link that opens in the user's browser or mail program.
class CHyperlinkLabel : public QLabel {
    Q_OBJECT
public:
    CHyperlinkLabel(const QString& text, const QUrl& target, QWidget* parent = nullptr);
};

} // namespace tarvix
