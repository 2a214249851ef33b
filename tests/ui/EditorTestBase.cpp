#include "EditorTestBase.h"

#include "framework/DialogRunner.h"
#include "settings/SettingsKey.h"
#include "ui/ListPane.h"
#include "ui/TreePane.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>

namespace tarvix::testing {

void EditorTest::StartEditor()
{
    auto ports = std::make_unique<CFakePorts>(m_portSetup);
    m_ports = ports.get();
    m_app = std::make_unique<CApplication>(CSettingsKey::InFile(SettingsPath().toStdString()),
                                           std::move(ports));
    m_app->Start({});
    ProcessEvents();
}

void EditorTest::StartOnSample()
{
    StartEditor();
    FillSampleDocument(Memory());
    Frame().RefreshViews();
    ProcessEvents();
}

void EditorTest::Press(int key, Qt::KeyboardModifiers modifiers)
{
    QWidget* focused = QApplication::focusWidget();
    ASSERT_NE(focused, nullptr);
    QTest::keyClick(focused, static_cast<Qt::Key>(key), modifiers);
    ProcessEvents();
}

void EditorTest::SelectInList(Node node, const std::vector<int>& rows)
{
    Frame().Tree().SelectNode(node);
    Frame().SwitchPane(Pane::List);
    ProcessEvents();
    CListPane& list = Frame().List();
    list.clearSelection();
    for (int row : rows)
        list.selectionModel()->select(list.model()->index(row, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void EditorTest::AnswerNextDialog(std::function<int(QDialog&)> answer)
{
    CDialogRunner::SetNextResponder([answer = std::move(answer)](QDialog& dialog) {
        dialog.show();
        const int result = answer(dialog);
        dialog.hide();
        return result;
    });
}

int ClickOk(QDialog& dialog)
{
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    EXPECT_NE(buttons, nullptr);
    if (buttons == nullptr)
        return QDialog::Rejected;
    dialog.setResult(QDialog::Rejected);
    buttons->button(QDialogButtonBox::Ok)->click();
    return dialog.result();
}

} // namespace tarvix::testing
