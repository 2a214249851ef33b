#include "ui/dragdrop/FileDropHandler.h"

#include "ui/ListPane.h"
#include "ui/MainFrame.h"
#include "ui/TreePane.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

namespace tarvix {

namespace {
bool HasSuffix(const QString& path, const char* suffix)
{
    return QFileInfo(path).suffix().compare(QLatin1String(suffix), Qt::CaseInsensitive) == 0;
}
} // namespace

CFileDropHandler::CFileDropHandler(CMainFrame& frame, ImportFile importFile)
    : QObject(&frame), m_frame(frame), m_importFile(std::move(importFile))
{
    for (QWidget* target :
         {static_cast<QWidget*>(&frame), frame.Tree().viewport(), frame.List().viewport()}) {
        target->setAcceptDrops(true);
        target->installEventFilter(this);
    }
}

QString CFileDropHandler::DroppedFile(const QMimeData* data)
{
    if (data == nullptr || !data->hasUrls())
        return {};
    QString midi;
    for (const QUrl& url : data->urls()) {
        const QString path = url.toLocalFile();
        if (path.isEmpty())
            continue;
        if (HasSuffix(path, "syx"))
            return path;
        if (midi.isEmpty() && HasSuffix(path, "mid"))
            midi = path;
    }
    return midi;
}

bool CFileDropHandler::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event);
    const QString path = DroppedFile(drop->mimeData());
    if (path.isEmpty())
        return QObject::eventFilter(watched, event);
    drop->acceptProposedAction();
    if (type == QEvent::Drop)
        Drop(watched, drop->position().toPoint(), path);
    return true;
}

void CFileDropHandler::Drop(QObject* target, QPoint position, const QString& path)
{
    // The work, with its questions and dialogs, runs once the drop has
    // returned, so the program the file came from is not kept waiting.
    if (HasSuffix(path, "syx")) {
        QTimer::singleShot(0, this, [this, path] { OpenSyx(path); });
        return;
    }
    const PaneCommandContext context = ContextAt(target, position);
    QTimer::singleShot(0, this, [this, context, path] {
        m_importFile(context, path);
        m_frame.RequestUpdate();
    });
}

PaneCommandContext CFileDropHandler::ContextAt(QObject* target, QPoint position)
{
    CTreePane& tree = m_frame.Tree();
    CListPane& list = m_frame.List();
    if (target == tree.viewport()) {
        const QModelIndex under = tree.indexAt(position);
        if (under.isValid())
            tree.setCurrentIndex(under);
        return {Pane::Tree, m_frame.CurrentNode(), {}};
    }
    if (target == list.viewport()) {
        const QModelIndex under = list.indexAt(position);
        // A row of the selection keeps it; any other row becomes it.
        if (under.isValid() && !list.selectionModel()->isRowSelected(under.row()))
            list.selectionModel()->setCurrentIndex(under, QItemSelectionModel::ClearAndSelect |
                                                              QItemSelectionModel::Rows);
        return {Pane::List, m_frame.CurrentNode(), list.SelectedRows()};
    }
    if (m_frame.ActivePane() == Pane::List)
        return {Pane::List, m_frame.CurrentNode(), list.SelectedRows()};
    return {Pane::Tree, m_frame.CurrentNode(), {}};
}

void CFileDropHandler::OpenSyx(const QString& path)
{
    if (m_frame.QuerySaveChanges())
        m_frame.OpenDocumentFile(path);
}

} // namespace tarvix
