#include "ui/edit/AssignPartsDialog.h"

#include "model/Mmt8Memory.h"
#include "ui/DeviceNameValidator.h"
#include "ui/edit/DialogParts.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvix {

CAssignPartsDialog::CAssignPartsDialog(const CMmt8Memory& memory, QWidget* parent)
    : QDialog(parent), m_songs(new QListWidget(this)), m_name(new QLineEdit(this))
{
    setObjectName(QStringLiteral("assignPartsDialog"));
    setWindowTitle(QStringLiteral("Assign parts to song"));
    setModal(true);

    m_songs->setObjectName(QStringLiteral("songList"));
    m_songs->setSelectionMode(QAbstractItemView::SingleSelection);
    for (int song = 0; song < kSongCount; ++song)
        m_songs->addItem(NumberedName(song, memory.Song(song).name));
    m_songs->setCurrentRow(0);
    m_name->setObjectName(QStringLiteral("songNameEdit"));
    ApplyDeviceNameRules(*m_name);

    auto* songLabel = new QLabel(QStringLiteral("Select target song:"), this);
    songLabel->setBuddy(m_songs);
    auto* nameLabel = new QLabel(QStringLiteral("Set target song name to:"), this);
    nameLabel->setBuddy(m_name);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(songLabel);
    layout->addWidget(m_songs);
    layout->addWidget(nameLabel);
    layout->addWidget(m_name);
    layout->addWidget(CreateOkCancelButtons(*this));
    m_songs->setFocus(Qt::OtherFocusReason);
}

int CAssignPartsDialog::Song() const
{
    return std::max(m_songs->currentRow(), 0);
}

QString CAssignPartsDialog::NewName() const
{
    return m_name->text();
}

} // namespace tarvix
