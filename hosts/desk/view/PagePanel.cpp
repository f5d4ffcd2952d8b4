#include "hosts/desk/view/PagePanel.h"

#include "hosts/desk/model/DeskController.h"
#include "hosts/desk/view/ElidedLabel.h"
#include "hosts/desk/view/FailureBox.h"
#include "hosts/desk/view/PlanForm.h"
#include "hosts/desk/view/ReasonLabel.h"
#include "hosts/desk/view/ShownText.h"
#include "hosts/desk/view/StreamPanel.h"
#include "hosts/desk/view/ThumbnailView.h"
#include "hosts/desk/view/VerticalScrollArea.h"
#include "hosts/desk/view/WrappedText.h"

#include <nox/jobs/TextSanitizer.h>
#include <nox/jobs/TransferFigures.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>

namespace NoxDesk {

namespace {

constexpr int titleLines = 8; // at most, in a narrow window
constexpr int titleCharacters = 300;

} // namespace

PagePanel::PagePanel(DeskController &controller, QWidget *parent)
    : QWidget(parent)
    , m_controller(controller)
    , m_busy(makeBusy())
    , m_failure(makeFailure())
    , m_hint(makeHint())
    , m_card(makeCard())
    , m_head(makeHead())
    , m_choices(makeChoices())
    , m_content(new QStackedWidget)
{
    m_content->addWidget(m_hint);
    m_content->addWidget(m_choices);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_head);
    layout->addWidget(m_content, 1);
    connect(&m_controller.reader(), &PageReader::stateChanged, this, &PagePanel::show);
    connect(&m_controller.reader(), &PageReader::pageChanged, this, &PagePanel::showPage);
    show(m_controller.reader().state());
}

QWidget *PagePanel::makeHint()
{
    auto *hint = new QWidget;
    auto *layout = new QVBoxLayout(hint);
    auto *text = new QLabel(tr("Paste or drop the address of a page above and press Enter.\n"
                               "Its streams appear here, to choose from."));
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    layout->addStretch();
    layout->addWidget(new ThumbnailView, 0, Qt::AlignHCenter);
    layout->addWidget(text);
    layout->addStretch();
    return hint;
}

QWidget *PagePanel::makeBusy()
{
    m_busyAddress = new ElidedLabel(Qt::ElideMiddle);
    m_busyAddress->setAlignment(Qt::AlignCenter);
    auto *text = new QLabel(tr("Reading the page…"));
    text->setAlignment(Qt::AlignCenter);
    auto *bar = new QProgressBar;
    bar->setObjectName(QStringLiteral("busy"));
    bar->setAccessibleName(tr("The page is being read"));
    bar->setRange(0, 0);
    auto *cancelButton = new QPushButton(tr("&Cancel"));
    cancelButton->setObjectName(QStringLiteral("cancelReading"));
    connect(cancelButton, &QPushButton::clicked, &m_controller.reader(), &PageReader::cancel);

    auto *busy = new QWidget;
    auto *row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(bar, 2);
    row->addWidget(cancelButton);
    row->addStretch(1);
    auto *layout = new QVBoxLayout(busy);
    layout->setContentsMargins({});
    layout->addWidget(text);
    layout->addWidget(m_busyAddress);
    layout->addLayout(row);
    return busy;
}

QWidget *PagePanel::makeFailure()
{
    m_failureBox = new FailureBox;
    connect(m_failureBox, &FailureBox::logRequested, this, &PagePanel::logRequested);
    m_failedAddress = new ElidedLabel(Qt::ElideMiddle);
    m_failedAddress->setObjectName(QStringLiteral("failedAddress"));
    auto *closeButton = new QPushButton(tr("Close &message"));
    closeButton->setObjectName(QStringLiteral("dismissFailure"));
    connect(closeButton, &QPushButton::clicked, &m_controller.reader(), &PageReader::dismissError);

    auto *failure = new QWidget;
    auto *row = new QHBoxLayout;
    row->addWidget(m_failedAddress, 1);
    row->addWidget(closeButton);
    auto *layout = new QVBoxLayout(failure);
    layout->setContentsMargins({});
    layout->addWidget(m_failureBox);
    layout->addLayout(row);
    return failure;
}

VerticalScrollArea *PagePanel::makeHead()
{
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    m_outdated = new QLabel(tr("This is still the page before:"));
    m_outdated->setObjectName(QStringLiteral("outdated"));
    layout->addWidget(m_busy);
    layout->addWidget(m_failure);
    layout->addWidget(m_outdated, 0, Qt::AlignLeft);
    layout->addWidget(m_card);
    auto *head = new VerticalScrollArea(content);
    head->setFocusPolicy(Qt::NoFocus); // scrolls to the child that gets the focus
    head->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    return head;
}

QWidget *PagePanel::makeChoices()
{
    m_streams = new StreamPanel(m_controller.streams());
    auto *form = new PlanForm(m_controller.plan());
    connect(m_streams, &StreamPanel::chosen, &m_controller, &DeskController::chooseStream);
    connect(m_streams, &StreamPanel::downloadRequested, &m_controller, &DeskController::startDownload);
    connect(form, &PlanForm::downloadRequested, &m_controller, &DeskController::startDownload);

    auto *choices = new QWidget;
    auto *layout = new QVBoxLayout(choices);
    layout->setContentsMargins({});
    layout->addWidget(m_streams, 1);
    layout->addWidget(form);
    return choices;
}

QWidget *PagePanel::makeCard()
{
    m_thumbnail = new ThumbnailView;
    m_title = new WrappedText(titleLines);
    m_title->setObjectName(QStringLiteral("title"));
    m_title->setAccessibleName(tr("Title of the page"));
    m_title->setFocusPolicy(Qt::ClickFocus);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.3);
    font.setBold(true);
    m_title->setFont(font);
    m_duration = new QLabel;
    m_duration->setObjectName(QStringLiteral("duration"));
    m_address = new ElidedLabel(Qt::ElideMiddle);
    m_warnings = new ReasonLabel;
    m_warnings->setObjectName(QStringLiteral("pageWarnings"));
    m_warnings->setAccessibleName(tr("Warnings of the download tool"));

    m_videosButton = new QPushButton;
    m_videosButton->setObjectName(QStringLiteral("showVideos"));
    connect(m_videosButton, &QPushButton::clicked, this, &PagePanel::listRequested);

    auto *texts = new QVBoxLayout;
    texts->addStretch();
    texts->addWidget(m_title);
    texts->addWidget(m_duration, 0, Qt::AlignLeft);
    texts->addWidget(m_address);
    texts->addWidget(m_warnings);
    texts->addWidget(m_videosButton, 0, Qt::AlignLeft);
    texts->addStretch();
    auto *card = new QWidget;
    auto *layout = new QHBoxLayout(card);
    layout->setContentsMargins({});
    layout->addWidget(m_thumbnail);
    layout->addSpacing(fontMetrics().averageCharWidth());
    layout->addLayout(texts, 1);
    connect(&m_controller.thumbnail(), &ThumbnailLoader::changed, m_thumbnail, [this] {
        m_thumbnail->setPicture(m_controller.thumbnail().picture());
        m_thumbnail->setVisible(m_controller.thumbnail().isLoading() || !m_controller.thumbnail().picture().isNull());
    });
    return card;
}

void PagePanel::show(PageReader::State state)
{
    const PageReader &reader = m_controller.reader();
    const bool isReading = state == PageReader::State::Reading;
    const bool isFailed = state == PageReader::State::Failed;
    // Only a widget that will be hidden gives up the focus. Any other, such as the address field, keeps it.
    const QWidget *focused = window()->focusWidget();
    const bool hadFocus = focused != nullptr && (m_busy->isAncestorOf(focused) || m_failure->isAncestorOf(focused));
    m_busyAddress->setText(reader.requestedUrl());
    m_failedAddress->setText(reader.requestedUrl());
    if (isFailed)
        m_failureBox->setTexts(reader.errorString(), reader.errorDetails());
    m_busy->setVisible(isReading);
    m_failure->setVisible(isFailed);
    m_card->setVisible(reader.hasPage());
    m_outdated->setVisible(reader.isOutdated());
    m_card->setEnabled(!reader.isOutdated());
    m_choices->setEnabled(!reader.isOutdated());
    m_streams->setOutdated(reader.isOutdated()); // the other label may be scrolled out of sight
    m_head->setVisible(isReading || isFailed || reader.hasPage());
    m_content->setVisible(reader.hasPage() || !(isReading || isFailed));
    m_content->setCurrentWidget(reader.hasPage() ? m_choices : m_hint);
    if (hadFocus && !isReading)
        focusStreams();
}

void PagePanel::showPage()
{
    const Nox::WebMediaInfo page = m_controller.reader().page();
    const QString title = Nox::TextSanitizer::line(page.getTitle());
    const QString shown = ShownText::cut(title, titleCharacters);
    m_title->showText(shown);
    m_title->setToolTip(shown == title ? QString() : ShownText::breakable(title));
    m_title->setAccessibleDescription(shown == title ? QString() : title);
    const qint64 seconds = page.getDuration();
    m_duration->setText(seconds > 0 ? tr("Duration %1").arg(Nox::TransferFigures::timeText(seconds))
                                    : tr("Duration unknown"));
    m_address->setText(m_controller.reader().url());
    m_warnings->explain(m_controller.reader().warnings().join(QLatin1Char('\n')), *m_address);
    const int count = m_controller.reader().videoCount();
    m_videosButton->setVisible(count != 1);
    m_videosButton->setText(m_controller.reader().isInParts() ? tr("This is the first of %1 parts. Choose…").arg(count)
                                : count > 1 ? tr("This is the first of %1 videos. Choose…").arg(count)
                                            : tr("This is the first of several videos. Choose…"));
}

void PagePanel::focusStreams()
{
    if (m_controller.reader().hasPage())
        m_streams->focusTable();
}

} // namespace NoxDesk
