#include "ui/edit/NumberDialog.h"

#include "framework/MessageBox.h"
#include "framework/UpDownEdit.h"
#include "ui/edit/DialogParts.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <optional>

namespace tarvix {

CNumberDialog::CNumberDialog(const NumberDialogSetup& setup, int value, QWidget* parent)
    : QDialog(parent), m_setup(setup), m_field(new CUpDownEdit(this)), m_value(value)
{
    setWindowTitle(setup.title);
    setModal(true);

    m_field->setObjectName(QStringLiteral("numberField"));
    m_field->SetRange(setup.minimum, setup.maximum);
    m_field->SetValue(value);
    auto* label = new QLabel(setup.label, this);
    label->setBuddy(m_field);

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_field);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(row);
    if (!setup.note.isEmpty()) {
        auto* note = new QLabel(setup.note, this);
        note->setObjectName(QStringLiteral("note"));
        note->setWordWrap(true);
        layout->addWidget(note);
    }
    layout->addWidget(CreateOkCancelButtons(*this));
    m_field->SelectForCorrection();
}

void CNumberDialog::accept()
{
    const std::optional<int> value = m_field->ValueInRange();
    if (!value) {
        CMessageBox::Report(this, m_setup.invalidText);
        m_field->SelectForCorrection();
        return;
    }
    m_value = *value;
    QDialog::accept();
}

} // namespace tarvix
