#include "ui/transfer/MidiProgressDlg.h"

#include "framework/DialogRunner.h"
#include "framework/MessageBox.h"
#include "transport/transfer/SysexTransfer.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <climits>

namespace tarvix {

namespace {
constexpr int kTextLines = 3;

int ToInt(std::uint32_t value)
{
    return static_cast<int>(std::min<std::uint32_t>(value, INT_MAX));
}
} // namespace

CMidiProgressDlg::CMidiProgressDlg(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("midiProgressDialog"));
    setWindowTitle(tr("Midi progress"));
    setModal(true);

    m_text = new QLabel(this);
    m_text->setObjectName(QStringLiteral("statusText"));
    m_text->setProperty("controlId", kStatusTextId);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_text->setWordWrap(true);
    m_text->setMinimumHeight(QFontMetrics(m_text->font()).lineSpacing() * kTextLines);
    m_text->setMinimumWidth(QFontMetrics(m_text->font()).averageCharWidth() * 60);

    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("progressBar"));
    m_progress->setProperty("controlId", kProgressBarId);
    m_progress->setTextVisible(false);

    m_cancel = new QPushButton(tr("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("cancelButton"));
    m_cancel->setDefault(true);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    layout->addWidget(m_progress);
    layout->addLayout(buttons);

    m_timer.setInterval(kTickMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &CMidiProgressDlg::OnTick);
}

void CMidiProgressDlg::ReportMessage(const std::string& text)
{
    // Failures before and after the progress show over the window.
    QWidget* owner = isVisible() ? this : parentWidget();
    CMessageBox::Report(owner, QString::fromStdString(text));
}

bool CMidiProgressDlg::RunProgress(CSysexTransfer& transfer)
{
    m_transfer = &transfer;
    ShowTransfer();
    m_timer.start();
    const int result = CDialogRunner::Exec(*this);
    m_timer.stop();
    m_transfer = nullptr;
    return result == QDialog::Accepted;
}

void CMidiProgressDlg::OnTick()
{
    if (m_transfer == nullptr)
        return;
    if (m_transfer->Tick()) {
        m_timer.stop();
        QMetaObject::invokeMethod(this, &QDialog::accept, Qt::QueuedConnection);
        return;
    }
    ShowTransfer();
}

void CMidiProgressDlg::ShowTransfer()
{
    m_text->setText(QString::fromStdString(m_transfer->GetText()));
    m_progress->setRange(0, ToInt(m_transfer->GetProgressRange()));
    m_progress->setValue(ToInt(m_transfer->GetProgressPosition()));
}

QString CMidiProgressDlg::StatusText() const
{
    return m_text->text();
}
int CMidiProgressDlg::ProgressMaximum() const
{
    return m_progress->maximum();
}
int CMidiProgressDlg::ProgressValue() const
{
    return m_progress->value();
}

} // namespace tarvix
