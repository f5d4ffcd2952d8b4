#include "hosts/desk/view/PlaylistDialog.h"

#include "hosts/desk/view/ShownText.h"

#include <nox/jobs/TransferFigures.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace NoxDesk {

namespace {

constexpr int titleCharacters = 200;

} // namespace

PlaylistDialog::PlaylistDialog(const QString &url, const Nox::ToolSetup &tools, QWidget *parent)
    : QDialog(parent)
    , m_url(url)
    , m_tools(tools)
    , m_list(new QListWidget)
    , m_state(new QLabel)
    , m_moreButton(new QPushButton(tr("&List more")))
{
    setWindowTitle(tr("Videos of the page"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_list->setObjectName(QStringLiteral("videos"));
    m_list->setAccessibleName(tr("Videos of the page"));
    m_state->setObjectName(QStringLiteral("videosState"));
    m_state->setWordWrap(true);
    m_state->setTextFormat(Qt::PlainText);
    m_moreButton->setObjectName(QStringLiteral("moreVideos"));
    connect(m_moreButton, &QPushButton::clicked, this, &PlaylistDialog::listMore);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    m_downloadButton = buttons->addButton(tr("&Download"), QDialogButtonBox::AcceptRole);
    m_downloadButton->setObjectName(QStringLiteral("downloadVideos"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        Q_EMIT chosen(ticked());
        accept();
    });
    for (const bool isAll : {true, false}) {
        QPushButton *button = buttons->addButton(isAll ? tr("&All") : tr("&None"), QDialogButtonBox::ResetRole);
        button->setObjectName(isAll ? QStringLiteral("allVideos") : QStringLiteral("noVideos"));
        connect(button, &QPushButton::clicked, this, [this, isAll] { tickAll(isAll); });
    }
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_state);
    layout->addWidget(m_moreButton, 0, Qt::AlignLeft);
    layout->addWidget(buttons);
    connect(m_list, &QListWidget::itemChanged, this, &PlaylistDialog::refresh);
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().lineSpacing() * 24);
    listMore();
}

void PlaylistDialog::listMore()
{
    if (m_job != nullptr && m_job->entries().isEmpty())
        m_next += Nox::PlaylistJob::maximumCount; // no video of the last step has a usable address
    m_job = std::make_unique<Nox::PlaylistJob>(m_url, m_tools);
    m_job->setRange(m_next);
    connect(m_job.get(), &Nox::PlaylistJob::entryFound, this, &PlaylistDialog::add);
    connect(m_job.get(), &Nox::Job::finished, this, &PlaylistDialog::refresh);
    m_job->start();
    refresh();
}

void PlaylistDialog::add(const Nox::PlaylistEntry &entry)
{
    const QString title = entry.title.isEmpty() ? entry.url : ShownText::cut(entry.title, titleCharacters);
    const QString length = entry.duration > 0 ? Nox::TransferFigures::timeText(entry.duration) : QString();
    auto *item = new QListWidgetItem(
        length.isEmpty() ? tr("%1. %2", "number, title").arg(entry.number).arg(title)
                         : tr("%1. %2 (%3)", "number, title, duration").arg(entry.number).arg(title, length));
    item->setData(Qt::UserRole, entry.url);
    item->setCheckState(Qt::Unchecked);
    m_list->addItem(item);
    m_next = qMax(m_next, entry.number) + 1; // those without a usable address have numbers, too
}

void PlaylistDialog::tickAll(bool isTicked)
{
    const QSignalBlocker blocker(m_list); // one refresh, not one for each of thousands of videos
    for (int row = 0; row < m_list->count(); ++row)
        m_list->item(row)->setCheckState(isTicked ? Qt::Checked : Qt::Unchecked);
    refresh();
}

QStringList PlaylistDialog::ticked() const
{
    QStringList result;
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->checkState() == Qt::Checked)
            result += m_list->item(row)->data(Qt::UserRole).toString();
    }
    return result;
}

void PlaylistDialog::refresh()
{
    const bool isListing = m_job->state() != Nox::Job::Ended;
    const int count = m_list->count();
    QString text = m_job->total() > 0 ? tr("%1 of %2 videos are listed.").arg(count).arg(m_job->total())
                                      : tr("%1 videos are listed.").arg(count);
    if (isListing)
        text = tr("The videos are being listed…");
    else if (m_job->error() != Nox::Job::NoError)
        text = m_job->errorString();
    m_state->setText(text);
    m_moreButton->setVisible(!isListing && m_job->hasMore());
    m_downloadButton->setEnabled(!ticked().isEmpty());
}

} // namespace NoxDesk
