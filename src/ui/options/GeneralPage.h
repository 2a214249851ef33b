#pragma once

#include "ui/options/OptionsPage.h"

#include <cstdint>
#include <vector>

class QCheckBox;

namespace tarvix {

class CSettings;

// What the program does at start and how its window shows things.
class CGeneralPage : public COptionsPage {
    Q_OBJECT
public:
    static constexpr int kLoadDeviceOnStartId = 2601;
    static constexpr int kLoadLastFileOnStartId = 2602;
    static constexpr int kShowToolBarButtonTextId = 2603;
    static constexpr int kShowMidiProgramNameId = 2604;
    static constexpr int kShowMidiControllerNameId = 2605;
    static constexpr int kShowMidiNoteNameId = 2606;

    explicit CGeneralPage(CSettings& settings, QWidget* parent = nullptr);

    bool Leave() override;
    void Apply() override;

protected:
    void FillControls() override;

private:
    struct Box {
        QCheckBox* control;
        std::uint32_t copy;
        std::uint32_t* setting;
    };

    QCheckBox* AddBox(QWidget& group, int controlId, const char* text, std::uint32_t& setting);
    // The two start-up choices exclude each other here, though the store may
    // hold both; the last file then wins at start.
    void OnStartChoice(QCheckBox* checked);

    std::vector<Box> m_boxes;
};

} // namespace tarvix
