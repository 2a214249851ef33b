#include "ui/options/OptionsSheet.h"

#include "framework/DialogRunner.h"
#include "ui/options/GeneralPage.h"
#include "ui/options/MidiPage.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tarvix {

int COptionsSheet::Show(QWidget* owner, CSettings& settings, IMidiPorts& ports, int startPage,
                        int focusControl)
{
    COptionsSheet sheet(owner != nullptr ? owner : QApplication::activeWindow(), settings, ports,
                        startPage, focusControl);
    return CDialogRunner::Exec(sheet);
}

COptionsSheet::COptionsSheet(QWidget* owner, CSettings& settings, IMidiPorts& ports, int startPage,
                             int focusControl)
    : QDialog(owner)
{
    setObjectName(QStringLiteral("optionsSheet"));
    setWindowTitle(tr("Options"));

    m_general = new CGeneralPage(settings, this);
    m_midi = new CMidiPage(settings, ports, this);
    m_tabs = new QTabWidget(this);
    for (COptionsPage* page : Pages()) {
        m_tabs->addTab(page, page->Title());
        connect(page, &COptionsPage::changed, this, [this] { m_apply->setEnabled(true); });
    }

    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_cancel = buttons->button(QDialogButtonBox::Cancel);
    m_apply = buttons->button(QDialogButtonBox::Apply);
    // The style gives Apply no access key of its own.
    m_apply->setText(tr("&Apply"));
    m_apply->setEnabled(false);
    connect(m_ok, &QPushButton::clicked, this, &COptionsSheet::OnOk);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_apply, &QPushButton::clicked, this, &COptionsSheet::OnApply);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addWidget(buttons);

    m_activePage = startPage == kMidiPage ? kMidiPage : kGeneralPage;
    if (focusControl != 0)
        Page(m_activePage)->SetFocusControl(focusControl);
    {
        const QSignalBlocker blocker(m_tabs);
        m_tabs->setCurrentIndex(m_activePage);
    }
    Page(m_activePage)->Create();
    connect(m_tabs, &QTabWidget::currentChanged, this, &COptionsSheet::OnTabChanged);
}

COptionsSheet::~COptionsSheet() = default;

std::array<COptionsPage*, 2> COptionsSheet::Pages() const
{
    return {m_general, m_midi};
}

COptionsPage* COptionsSheet::Page(int index) const
{
    return Pages()[index == kMidiPage ? kMidiPage : kGeneralPage];
}

bool COptionsSheet::SetActivePage(int page)
{
    m_tabs->setCurrentIndex(page);
    return m_activePage == page;
}

void COptionsSheet::OnTabChanged(int index)
{
    if (index == m_activePage || index < 0)
        return;
    if (!Page(m_activePage)->Leave()) {
        // The page with the wrong entry stays in front.
        const QSignalBlocker blocker(m_tabs);
        m_tabs->setCurrentIndex(m_activePage);
        return;
    }
    m_activePage = index;
    Page(index)->Create();
}

bool COptionsSheet::ApplyChanges()
{
    if (!Page(m_activePage)->Leave())
        return false;
    for (COptionsPage* page : Pages()) {
        if (page->IsCreated())
            page->Apply();
    }
    m_apply->setEnabled(false);
    return true;
}

void COptionsSheet::OnOk()
{
    if (ApplyChanges())
        accept();
}

void COptionsSheet::OnApply()
{
    ApplyChanges();
}

} // namespace tarvix
