#pragma once

#include "model/Mmt8Limits.h"
#include "model/Mmt8Song.h"

#include <QDialog>

#include <array>
#include <vector>

class QCheckBox;
class QComboBox;

namespace tarvix {

class CMmt8Memory;
class CUpDownEdit;

// Song step properties: walks a copy of a song's steps and edits each
// step's part and enabled tracks. The caller takes the copy back on OK.
class CStepPropertiesDialog : public QDialog {
    Q_OBJECT
public:
    // steps must not be empty; step is the activated one.
    CStepPropertiesDialog(const CMmt8Memory& memory, std::vector<Mmt8Step> steps, int step,
                          QWidget* parent = nullptr);

    const std::vector<Mmt8Step>& Steps() const { return m_steps; }
    int ShownStep() const { return m_shown; }

private:
    void ShowStep(int step);
    void OnStepTextChanged();
    void OnPartChosen(int part);
    void OnTrackClicked();

    std::vector<Mmt8Step> m_steps;
    int m_shown = 0;
    CUpDownEdit* m_stepField;
    QComboBox* m_parts;
    std::array<QCheckBox*, kTracksPerPart> m_tracks{};
};

} // namespace tarvix
