#include "ui/options/MidiPage.h"

#include "framework/MessageBox.h"
#include "framework/UpDownEdit.h"
#include "settings/Settings.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"
#include "ui/MidiPorts.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvix {

namespace {
// Every field of the page is a number of the settings table, which holds
// its range.
const SettingDefinition& DefinitionOf(std::uint32_t SettingValues::*setting)
{
    const auto definitions = SettingDefinitions();
    const auto found = std::find_if(
        definitions.begin(), definitions.end(),
        [setting](const SettingDefinition& definition) { return definition.number == setting; });
    Q_ASSERT(found != definitions.end());
    return *found;
}
} // namespace

CMidiPage::CMidiPage(CSettings& settings, IMidiPorts& ports, QWidget* parent)
    : COptionsPage(tr("MIDI"), kOutPortId, parent), m_settings(settings), m_ports(ports)
{
    setObjectName(QStringLiteral("midiPage"));
    auto* layout = new QVBoxLayout(this);
    QGridLayout* input = AddGroup(*layout, tr("MIDI Input"));
    AddPortList(*input, kInPortId, "&Port name:", ports.InputPort(), &SettingValues::midiInDevice);
    AddNumber(*input, kInBufSizeId, "&Buffer size:", &SettingValues::midiInBufSize);
    AddNumber(*input, kInBufNumberId, "N&umber:", &SettingValues::midiInBufNumber);

    QGridLayout* output = AddGroup(*layout, tr("MIDI Output"));
    AddPortList(*output, kOutPortId, "P&ort name:", ports.OutputPort(),
                &SettingValues::midiOutDevice);
    AddNumber(*output, kOutBufSizeId, "Bu&ffer size:", &SettingValues::midiOutBufSize);
    AddNumber(*output, kOutBufNumberId, "Nu&mber:", &SettingValues::midiOutBufNumber);
    AddNumber(*output, kOutSyxDelayId, "Sysex &delay:", &SettingValues::midiOutSyxDelay);
    AddNumber(*output, kOutBufDelayId, "Buf d&elay:", &SettingValues::midiOutBufDelay);

    // Empty port lists say why, in the words the command line uses.
    m_reason = new QLabel(this);
    m_reason->setObjectName(QStringLiteral("portsReason"));
    m_reason->setWordWrap(true);
    m_reason->hide();
    layout->addWidget(m_reason);
    layout->addStretch(1);
}

QGridLayout* CMidiPage::AddGroup(QVBoxLayout& layout, const QString& title)
{
    auto* group = new QGroupBox(title, this);
    auto* grid = new QGridLayout(group);
    grid->setColumnStretch(1, 1);
    layout.addWidget(group);
    return grid;
}

void CMidiPage::AddPortList(QGridLayout& grid, int controlId, const char* label,
                            CMidiDevice* device, std::string SettingValues::*setting)
{
    auto* list = new QComboBox(this);
    SetControlId(*list, controlId);
    list->setMinimumContentsLength(24);
    auto* caption = new QLabel(tr(label), this);
    caption->setBuddy(list);
    const int row = grid.rowCount();
    grid.addWidget(caption, row, 0);
    grid.addWidget(list, row, 1);
    m_portLists.push_back({list, device, m_settings.Values().*setting, setting});
}

void CMidiPage::AddNumber(QGridLayout& grid, int controlId, const char* label,
                          std::uint32_t SettingValues::*setting)
{
    const SettingDefinition& definition = DefinitionOf(setting);
    auto* field = new CUpDownEdit(this);
    SetControlId(*field, controlId);
    field->SetRange(static_cast<int>(definition.min), static_cast<int>(definition.max));
    auto* caption = new QLabel(tr(label), this);
    caption->setBuddy(field);
    const int row = grid.rowCount();
    grid.addWidget(caption, row, 0);
    grid.addWidget(field, row, 1, Qt::AlignLeft);
    m_numbers.push_back({field, m_settings.Values().*setting, setting});
}

void CMidiPage::FillControls()
{
    QString reason;
    for (PortList& list : m_portLists) {
        FillPortList(list);
        connect(list.control, &QComboBox::currentIndexChanged, this, &COptionsPage::changed);
        // Only the "none" entry: the service says why, if it knows.
        if (list.control->count() == 1 && list.device != nullptr && reason.isEmpty())
            reason = QString::fromStdString(list.device->GetUnavailableReason()).trimmed();
    }
    m_reason->setText(reason);
    m_reason->setVisible(!reason.isEmpty());
    for (Number& number : m_numbers) {
        number.control->SetValue(static_cast<int>(number.copy));
        connect(number.control, &CUpDownEdit::textChanged, this, &COptionsPage::changed);
    }
}

void CMidiPage::FillPortList(PortList& list)
{
    QComboBox& control = *list.control;
    control.clear();
    control.addItem(QString::fromLatin1(kNoPort));
    int selected = 0;
    const std::uint32_t count = list.device != nullptr ? list.device->GetNumDevs() : 0;
    for (std::uint32_t index = 0; index < count; ++index) {
        std::string name;
        if (!list.device->GetDevName(index, name))
            continue;
        control.addItem(QString::fromStdString(name));
        if (selected == 0 && name == list.copy)
            selected = control.count() - 1;
    }
    control.setCurrentIndex(selected);
}

std::string CMidiPage::SelectedPortName(const PortList& list)
{
    // Read afresh from the driver, as the port list may have changed.
    const int entry = list.control->currentIndex();
    std::string name;
    if (entry <= 0 || list.device == nullptr ||
        !list.device->GetDevName(static_cast<std::uint32_t>(entry - 1), name))
        return {};
    return name;
}

bool CMidiPage::Leave()
{
    for (Number& number : m_numbers) {
        if (!number.control->ValueInRange()) {
            const SettingDefinition& definition = DefinitionOf(number.setting);
            CMessageBox::Report(this,
                                tr("Please enter an integer between %1 and %2.")
                                    .arg(definition.min)
                                    .arg(definition.max),
                                {}, QMessageBox::Warning);
            number.control->SelectForCorrection();
            return false;
        }
    }
    for (PortList& list : m_portLists)
        list.copy = SelectedPortName(list);
    for (Number& number : m_numbers)
        number.copy = static_cast<std::uint32_t>(*number.control->ValueInRange());
    return true;
}

void CMidiPage::Apply()
{
    SettingValues& values = m_settings.Values();
    for (const PortList& list : m_portLists)
        values.*list.setting = list.copy;
    for (const Number& number : m_numbers)
        values.*number.setting = number.copy;
    m_ports.OpenDevices();
}

} // namespace tarvix
