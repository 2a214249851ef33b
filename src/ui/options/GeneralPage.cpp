#include "ui/options/GeneralPage.h"

#include "settings/Settings.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QVBoxLayout>

namespace tarvix {

CGeneralPage::CGeneralPage(CSettings& settings, QWidget* parent)
    : COptionsPage(tr("General"), 0, parent)
{
    setObjectName(QStringLiteral("generalPage"));
    SettingValues& values = settings.Values();

    auto* starting = new QGroupBox(tr("When starting"), this);
    starting->setLayout(new QVBoxLayout);
    QCheckBox* device =
        AddBox(*starting, kLoadDeviceOnStartId, "Load &device settings", values.loadDeviceOnStart);
    QCheckBox* file = AddBox(*starting, kLoadLastFileOnStartId, "Load last SysEx &file",
                             values.loadLastFileOnStart);

    auto* miscellaneous = new QGroupBox(tr("Miscellaneous"), this);
    miscellaneous->setLayout(new QVBoxLayout);
    AddBox(*miscellaneous, kShowToolBarButtonTextId, "Show &toolbar button text",
           values.showToolBarButtonText);
    AddBox(*miscellaneous, kShowMidiNoteNameId, "Show MIDI &note name", values.showMidiNoteName);
    AddBox(*miscellaneous, kShowMidiProgramNameId, "Show MIDI &program name",
           values.showMidiProgramName);
    AddBox(*miscellaneous, kShowMidiControllerNameId, "Show MIDI &controller name",
           values.showMidiControllerName);

    // Only the user's clicks: filling the page shows both as stored.
    connect(device, &QCheckBox::clicked, this, [this, device] { OnStartChoice(device); });
    connect(file, &QCheckBox::clicked, this, [this, file] { OnStartChoice(file); });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(starting);
    layout->addWidget(miscellaneous);
    layout->addStretch(1);
}

QCheckBox* CGeneralPage::AddBox(QWidget& group, int controlId, const char* text,
                                std::uint32_t& setting)
{
    auto* box = new QCheckBox(tr(text), &group);
    SetControlId(*box, controlId);
    group.layout()->addWidget(box);
    connect(box, &QCheckBox::clicked, this, &COptionsPage::changed);
    m_boxes.push_back({box, setting, &setting});
    return box;
}

void CGeneralPage::OnStartChoice(QCheckBox* checked)
{
    if (!checked->isChecked())
        return;
    for (const int id : {kLoadDeviceOnStartId, kLoadLastFileOnStartId}) {
        auto* other = static_cast<QCheckBox*>(Control(id));
        if (other != checked)
            other->setChecked(false);
    }
}

void CGeneralPage::FillControls()
{
    for (Box& box : m_boxes)
        box.control->setChecked(box.copy == 1);
}

bool CGeneralPage::Leave()
{
    for (Box& box : m_boxes)
        box.copy = box.control->isChecked() ? 1 : 0;
    return true;
}

void CGeneralPage::Apply()
{
    for (const Box& box : m_boxes)
        *box.setting = box.copy;
}

} // namespace tarvix
