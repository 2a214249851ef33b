#pragma once

#include "UiTestBase.h"

#include <Qt>

#include <functional>
#include <vector>

class QDialog;

namespace tarvix::testing {

// The window with the editor's own commands behind it, as the program runs.
class EditorTest : public UiTest {
protected:
    void StartEditor();
    // The editor on the sample document (FillSampleDocument), drawn.
    void StartOnSample();
    // Presses key on whatever has the focus, as a user would.
    static void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // Shows node in the list, makes the list the active pane and selects
    // exactly rows (in the order given).
    void SelectInList(Node node, const std::vector<int>& rows);
    // Runs the next program dialog through answer, which gets it shown.
    void AnswerNextDialog(std::function<int(QDialog&)> answer);
};

// Presses the dialog's OK button; the result says whether it closed.
int ClickOk(QDialog& dialog);

} // namespace tarvix::testing
