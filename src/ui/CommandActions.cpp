#include "ui/CommandActions.h"

#include "ui/CommandTable.h"

#include <QAction>
#include <QIcon>
#include <QMenuBar>
#include <QToolBar>

namespace tarvix {

namespace {
struct IconName {
    CommandId id;
    const char* theme; // the desktop theme's icon, when it has one
    const char* file;  // our own, otherwise
};

const IconName kIcons[] = {
    {kCmdInit, "document-new", ":/icons/init.svg"},
    {kCmdOpen, "document-open", ":/icons/open.svg"},
    {kCmdSave, "document-save", ":/icons/save.svg"},
    {kCmdReceive, nullptr, ":/icons/receive.svg"},
    {kCmdSend, nullptr, ":/icons/send.svg"},
    {kCmdImport, "document-import", ":/icons/import.svg"},
    {kCmdExport, "document-export", ":/icons/export.svg"},
    {kCmdCopy, "edit-copy", ":/icons/copy.svg"},
    {kCmdPaste, "edit-paste", ":/icons/paste.svg"},
    {kCmdUndo, "edit-undo", ":/icons/undo.svg"},
    {kCmdRedo, "edit-redo", ":/icons/redo.svg"},
    {kCmdOptions, "preferences-system", ":/icons/options.svg"},
    {kCmdAbout, "help-about", ":/icons/about.svg"},
};

QIcon IconFor(CommandId id)
{
    for (const IconName& icon : kIcons)
        if (icon.id == id)
            return icon.theme ? QIcon::fromTheme(QString::fromLatin1(icon.theme),
                                                 QIcon(QString::fromLatin1(icon.file)))
                              : QIcon(QString::fromLatin1(icon.file));
    return {};
}
} // namespace

CCommandActions::CCommandActions(QWidget& window) : QObject(&window)
{
    for (const CommandInfo& info : CommandTable()) {
        if (info.id == kCmdRecentFirst)
            continue; // a submenu, made with the menus
        auto* action = new QAction(&window);
        action->setObjectName(QString::fromLatin1(info.objectName));
        if (info.menuText)
            action->setText(QString::fromLatin1(info.menuText));
        const QString promptTip = QString::fromLatin1(info.promptTip);
        const qsizetype newline = promptTip.indexOf(QLatin1Char('\n'));
        action->setStatusTip(newline < 0 ? promptTip : promptTip.left(newline));
        if (newline >= 0) {
            action->setToolTip(promptTip.mid(newline + 1));
            action->setIconText(promptTip.mid(newline + 1));
        }
        if (*info.keys)
            action->setShortcuts(QKeySequence::listFromString(QString::fromLatin1(info.keys),
                                                              QKeySequence::PortableText));
        action->setIcon(IconFor(info.id));
        const CommandId id = info.id;
        connect(action, &QAction::triggered, this, [this, id] { emit commandTriggered(id); });
        window.addAction(action);
        m_actions[id] = action;
    }
}

QAction* CCommandActions::Action(CommandId id) const
{
    const auto found = m_actions.find(id);
    return found == m_actions.end() ? nullptr : found->second;
}

QMenu* CCommandActions::BuildMenus(QMenuBar& menuBar)
{
    QMenu* recent = nullptr;
    QMenu* menu = nullptr;
    CommandMenu current = CommandMenu::None;
    for (const CommandInfo& info : CommandTable()) {
        if (info.menu == CommandMenu::None)
            continue;
        if (info.menu != current) {
            current = info.menu;
            menu = menuBar.addMenu(QString::fromLatin1(MenuTitle(current)));
            static const char* const kNames[] = {"",          "menuFile", "menuEdit",
                                                 "menuTools", "menuHelp", "menuView"};
            menu->setObjectName(QString::fromLatin1(kNames[static_cast<int>(current)]));
        }
        if (info.id == kCmdRecentFirst) {
            recent = menu->addMenu(QString::fromLatin1(info.menuText));
            recent->menuAction()->setObjectName(QString::fromLatin1(info.objectName));
            recent->menuAction()->setStatusTip(QString::fromLatin1(info.promptTip));
        } else {
            menu->addAction(Action(info.id));
        }
        if (info.separatorAfter)
            menu->addSeparator();
    }
    return recent;
}

void CCommandActions::BuildToolbar(QToolBar& toolbar)
{
    for (CommandId id : ToolbarLayout()) {
        if (id == kCmdNone)
            toolbar.addSeparator();
        else
            toolbar.addAction(Action(id));
    }
}

} // namespace tarvix
