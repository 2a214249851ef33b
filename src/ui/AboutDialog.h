#pragma once

#include <QDialog>

namespace tarvix {

// The program's icon, name, version and build, its copyright, and the
// maker's web page and mail address where they lead somewhere.
class CAboutDialog : public QDialog {
    Q_OBJECT
public:
    explicit CAboutDialog(QWidget* parent = nullptr);
};

// "Tarvix v1.00 (build 45)": major and minor of the version, fixed build.
QString AboutVersionText();

// False for an address on a name reserved never to resolve (".example",
// ".invalid", ".test", ".localhost") or without a host: a link there would
// lead nowhere.
bool LeadsSomewhere(const QUrl& url);

} // namespace tarvix
