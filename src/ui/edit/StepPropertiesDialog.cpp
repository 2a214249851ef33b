#include "ui/edit/StepPropertiesDialog.h"

#include "framework/UpDownEdit.h"
#include "model/Mmt8Memory.h"
#include "ui/edit/DialogParts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvix {

CStepPropertiesDialog::CStepPropertiesDialog(const CMmt8Memory& memory, std::vector<Mmt8Step> steps,
                                             int step, QWidget* parent)
    : QDialog(parent), m_steps(std::move(steps)), m_stepField(new CUpDownEdit(this)),
      m_parts(new QComboBox(this))
{
    setObjectName(QStringLiteral("stepPropertiesDialog"));
    setWindowTitle(QStringLiteral("Song step properties"));
    setModal(true);

    m_stepField->setObjectName(QStringLiteral("stepField"));
    m_stepField->SetRange(1, static_cast<int>(std::max<std::size_t>(m_steps.size(), 1)));
    m_parts->setObjectName(QStringLiteral("partList"));
    for (int part = 0; part < kPartCount; ++part)
        m_parts->addItem(NumberedName(part, memory.Part(part).name));

    auto* form = new QGridLayout;
    auto* stepLabel = new QLabel(QStringLiteral("&Step:"), this);
    stepLabel->setBuddy(m_stepField);
    auto* partLabel = new QLabel(QStringLiteral("&Part:"), this);
    partLabel->setBuddy(m_parts);
    form->addWidget(stepLabel, 0, 0);
    form->addWidget(m_stepField, 0, 1);
    form->addWidget(partLabel, 1, 0);
    form->addWidget(m_parts, 1, 1);

    auto* tracks = new QGroupBox(QStringLiteral("Enabled tracks:"), this);
    auto* boxes = new QHBoxLayout(tracks);
    for (int track = 0; track < kTracksPerPart; ++track) {
        auto* box = new QCheckBox(QStringLiteral("&%1").arg(track + 1), tracks);
        box->setObjectName(QStringLiteral("track%1").arg(track + 1));
        boxes->addWidget(box);
        connect(box, &QCheckBox::clicked, this, &CStepPropertiesDialog::OnTrackClicked);
        m_tracks[static_cast<std::size_t>(track)] = box;
    }

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(tracks);
    layout->addWidget(CreateOkCancelButtons(*this));

    const int last = static_cast<int>(m_steps.size()) - 1;
    m_shown = std::clamp(step, 0, std::max(last, 0));
    m_stepField->SetValue(m_shown + 1);
    ShowStep(m_shown);
    connect(m_stepField, &CUpDownEdit::textChanged, this,
            &CStepPropertiesDialog::OnStepTextChanged);
    connect(m_parts, &QComboBox::activated, this, &CStepPropertiesDialog::OnPartChosen);
    m_stepField->SelectForCorrection();
}

void CStepPropertiesDialog::ShowStep(int step)
{
    if (step < 0 || static_cast<std::size_t>(step) >= m_steps.size())
        return;
    m_shown = step;
    const Mmt8Step& shown = m_steps[static_cast<std::size_t>(step)];
    m_parts->setCurrentIndex(shown.part);
    for (std::size_t track = 0; track < m_tracks.size(); ++track)
        m_tracks[track]->setChecked((shown.trackMask >> track) & 1u);
}

void CStepPropertiesDialog::OnStepTextChanged()
{
    // The field counts from 1; what is no number, or 0, stays at the first
    // step, and anything past the end shows the last.
    const long long typed = m_stepField->Value().value_or(0);
    const long long last = static_cast<long long>(m_steps.size()) - 1;
    ShowStep(static_cast<int>(std::clamp(typed - 1, 0LL, std::max(last, 0LL))));
}

void CStepPropertiesDialog::OnPartChosen(int part)
{
    if (m_steps.empty() || part < 0 || part >= kPartCount)
        return;
    m_steps[static_cast<std::size_t>(m_shown)].part = static_cast<std::uint8_t>(part);
}

void CStepPropertiesDialog::OnTrackClicked()
{
    if (m_steps.empty())
        return;
    unsigned mask = 0;
    for (std::size_t track = 0; track < m_tracks.size(); ++track)
        if (m_tracks[track]->isChecked())
            mask |= 1u << track;
    m_steps[static_cast<std::size_t>(m_shown)].trackMask = static_cast<std::uint8_t>(mask);
}

} // namespace tarvix
