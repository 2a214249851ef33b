#pragma once

#include <QDialog>
#include <QString>

class QLineEdit;
class QListWidget;

namespace tarvix {

class CMmt8Memory;

// Assign parts to song: the target song and, optionally, its new name.
class CAssignPartsDialog : public QDialog {
    Q_OBJECT
public:
    CAssignPartsDialog(const CMmt8Memory& memory, QWidget* parent = nullptr);

    int Song() const;
    // Empty keeps the song's name.
    QString NewName() const;

private:
    QListWidget* m_songs;
    QLineEdit* m_name;
};

} // namespace tarvix
