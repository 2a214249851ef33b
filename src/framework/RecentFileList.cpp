#include "framework/RecentFileList.h"

#include "framework/ValueStore.h"

#include <QMenu>

namespace tarvix {

namespace {
QString DocumentName(int number)
{
    return QStringLiteral("Document%1").arg(number);
}
const QString kCountName = QStringLiteral("DocumentCount");
} // namespace

CRecentFileList::CRecentFileList(int firstCommandId, QObject* parent)
    : QObject(parent), m_firstCommandId(firstCommandId)
{
}

void CRecentFileList::AttachMenu(QMenu* menu, const QString& prompt)
{
    m_menu = menu;
    m_prompt = prompt;
    UpdateMenu();
}

void CRecentFileList::Read(IValueStore& store, const QString& subKey)
{
    auto count = static_cast<std::uint32_t>(m_maxEntries);
    if (store.ReadDword(subKey, kCountName, count) && count >= 1 && count <= kMaxEntriesLimit)
        m_maxEntries = static_cast<int>(count);
    m_entries.clear();
    for (int number = 1; number <= m_maxEntries; ++number) {
        QString path;
        if (store.ReadString(subKey, DocumentName(number), path) && !path.isEmpty() &&
            IndexOf(path) < 0)
            m_entries.append(path);
    }
    UpdateMenu();
}

void CRecentFileList::Write(IValueStore& store, const QString& subKey) const
{
    store.WriteDword(subKey, kCountName, static_cast<std::uint32_t>(m_maxEntries));
    for (int number = 1; number <= kMaxEntriesLimit; ++number) {
        if (number <= m_entries.size())
            store.WriteString(subKey, DocumentName(number), m_entries[number - 1]);
        else
            store.DeleteValue(subKey, DocumentName(number));
    }
}

void CRecentFileList::Add(const QString& path)
{
    if (path.isEmpty())
        return;
    const int index = IndexOf(path);
    if (index >= 0)
        m_entries.removeAt(index);
    m_entries.prepend(path);
    while (m_entries.size() > m_maxEntries)
        m_entries.removeLast();
    UpdateMenu();
}

bool CRecentFileList::Remove(const QString& path)
{
    const int index = IndexOf(path);
    if (index < 0)
        return false;
    m_entries.removeAt(index);
    UpdateMenu();
    return true;
}

QString CRecentFileList::EntryFor(int commandId) const
{
    const int index = commandId - m_firstCommandId;
    return index >= 0 && index < m_entries.size() ? m_entries[index] : QString();
}

int CRecentFileList::IndexOf(const QString& path) const
{
    for (int i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].compare(path, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

void CRecentFileList::UpdateMenu()
{
    if (!m_menu)
        return;
    m_menu->clear();
    if (m_entries.isEmpty()) {
        QAction* empty = m_menu->addAction(tr("(empty)"));
        empty->setObjectName(QStringLiteral("recentFileEmpty"));
        empty->setEnabled(false);
        return;
    }
    for (int i = 0; i < m_entries.size(); ++i) {
        // "&1 path": the number is the item's access key, as menus of
        // recent files have always done.
        QString text = m_entries[i];
        text.replace(QLatin1Char('&'), QStringLiteral("&&"));
        QAction* action = m_menu->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(text));
        action->setObjectName(QStringLiteral("recentFile%1").arg(i + 1));
        action->setStatusTip(m_prompt);
        const int commandId = m_firstCommandId + i;
        action->setData(commandId);
        connect(action, &QAction::triggered, this,
                [this, commandId] { emit entryChosen(commandId); });
    }
}

} // namespace tarvix
