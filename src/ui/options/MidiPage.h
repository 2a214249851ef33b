#pragma once

#include "settings/SettingValues.h"
#include "ui/FrameKeys.h"
#include "ui/options/OptionsPage.h"

#include <cstdint>
#include <string>
#include <vector>

class QComboBox;
class QGridLayout;
class QLabel;
class QVBoxLayout;

namespace tarvix {

class CMidiDevice;
class CUpDownEdit;
class CSettings;
class IMidiPorts;

// The MIDI ports and their buffers. Applying reopens the ports at once
// with what the page says.
class CMidiPage : public COptionsPage {
    Q_OBJECT
public:
    static constexpr int kInPortId = kMidiInPortControl;
    static constexpr int kInBufSizeId = 2712;
    static constexpr int kInBufNumberId = 2714;
    static constexpr int kOutPortId = kMidiOutPortControl;
    static constexpr int kOutBufSizeId = 2722;
    static constexpr int kOutBufNumberId = 2724;
    static constexpr int kOutSyxDelayId = 2726;
    static constexpr int kOutBufDelayId = 2728;
    static constexpr const char* kNoPort = "<none>";

    CMidiPage(CSettings& settings, IMidiPorts& ports, QWidget* parent = nullptr);

    bool Leave() override;
    void Apply() override;

protected:
    void FillControls() override;

private:
    struct PortList {
        QComboBox* control;
        CMidiDevice* device; // null: no ports to list
        std::string copy;
        std::string SettingValues::*setting;
    };
    struct Number {
        CUpDownEdit* control;
        std::uint32_t copy;
        std::uint32_t SettingValues::*setting;
    };

    QGridLayout* AddGroup(QVBoxLayout& layout, const QString& title);
    void AddPortList(QGridLayout& grid, int controlId, const char* label, CMidiDevice* device,
                     std::string SettingValues::*setting);
    void AddNumber(QGridLayout& grid, int controlId, const char* label,
                   std::uint32_t SettingValues::*setting);
    static void FillPortList(PortList& list);
    static std::string SelectedPortName(const PortList& list);

    CSettings& m_settings;
    IMidiPorts& m_ports;
    std::vector<PortList> m_portLists;
    std::vector<Number> m_numbers;
    QLabel* m_reason = nullptr; // why no ports are listed
};

} // namespace tarvix
