#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>

class QMenu;

namespace tarvix {

class IValueStore;

// The most recently used files, most recent first, shown in a submenu whose
// items carry consecutive command identifiers. Paths compare without regard
// to letter case, so one file is listed once however it was typed.
class CRecentFileList : public QObject {
    Q_OBJECT
public:
    static constexpr int kDefaultMaxEntries = 4;
    static constexpr int kMaxEntriesLimit = 15;

    explicit CRecentFileList(int firstCommandId, QObject* parent = nullptr);

    // The submenu to keep filled; prompt is each item's status-bar text.
    void AttachMenu(QMenu* menu, const QString& prompt);

    // "DocumentCount" (the list's length, taken when 1 to 15) and
    // "Document1".. under subKey; Document1 is the most recent.
    void Read(IValueStore& store, const QString& subKey);
    // Also deletes the unused "Document%i" values up to 15.
    void Write(IValueStore& store, const QString& subKey) const;

    void Add(const QString& path);
    bool Remove(const QString& path);

    const QStringList& Entries() const { return m_entries; }
    int MaxEntries() const { return m_maxEntries; }
    // The path behind a command identifier, or empty.
    QString EntryFor(int commandId) const;

signals:
    void entryChosen(int commandId);

private:
    int IndexOf(const QString& path) const;
    void UpdateMenu();

    int m_firstCommandId;
    int m_maxEntries = kDefaultMaxEntries;
    QStringList m_entries;
    QPointer<QMenu> m_menu;
    QString m_prompt;
};

} // namespace tarvix
