#pragma once

#include "ui/CommandId.h"

#include <QObject>

#include <map>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;
class QWidget;

namespace tarvix {

// One QAction per command of the command table, named by the table, with
// its keys, prompt, tooltip and icon; and the menus and toolbar built from
// them.
class CCommandActions : public QObject {
    Q_OBJECT
public:
    // The actions are added to window so their keys work everywhere in it.
    explicit CCommandActions(QWidget& window);

    QAction* Action(CommandId id) const;
    const std::map<CommandId, QAction*>& Actions() const { return m_actions; }

    // Fills the menu bar; returns the "Recent &Files" submenu.
    QMenu* BuildMenus(QMenuBar& menuBar);
    void BuildToolbar(QToolBar& toolbar);

signals:
    void commandTriggered(tarvix::CommandId id);

private:
    std::map<CommandId, QAction*> m_actions;
};

} // namespace tarvix
