#pragma once

#include "UiTestBase.h"

#include <functional>
#include <initializer_list>

class QDialog;

namespace tarvix::testing {

// The window with the editor's own commands behind it, as the program runs.
class EditorTest : public UiTest {
protected:
    void StartEditor();
    // Shows node in the list, makes the list the active pane and selects
    // exactly rows (in the order given).
    void SelectInList(Node node, std::initializer_list<int> rows);
    // Runs the next program dialog through answer, which gets it shown.
    void AnswerNextDialog(std::function<int(QDialog&)> answer);
};

// Presses the dialog's OK button; the result says whether it closed.
int ClickOk(QDialog& dialog);

} // namespace tarvix::testing
