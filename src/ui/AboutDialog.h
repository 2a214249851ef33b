#pragma once

#include <QDialog>

namespace tarvix {

// The program's name, version and build, its copyright and the maker's
// web page and mail address.
class CAboutDialog : public QDialog {
    Q_OBJECT
public:
    explicit CAboutDialog(QWidget* parent = nullptr);
};

// "Tarvix v1.00 (build 45)": major and minor of the version, fixed build.
QString AboutVersionText();

} // namespace tarvix
