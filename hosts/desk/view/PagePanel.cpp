#include "hosts/desk/view/PagePanel.h"

#include "hosts/common/TextSanitizer.h"
#include "hosts/common/TransferFigures.h"
#include "hosts/desk/model/Desk.h"
#include "hosts/desk/view/ElidedLabel.h"
#include "hosts/desk/view/FailureBox.h"
#include "hosts/desk/view/PlanForm.h"
#include "hosts/desk/view/StreamPanel.h"
#include "hosts/desk/view/ThumbnailView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace NoxDesk {

namespace {

constexpr int maximumTitle = 160; // characters; two or three lines

} // namespace

PagePanel::PagePanel(Desk &desk, QWidget *parent)
    : QStackedWidget(parent)
    , m_desk(desk)
    , m_hint(makeHint())
    , m_busy(makeBusy())
    , m_failure(makeFailure())
    , m_page(makePage())
{
    for (QWidget *widget : {m_hint, m_busy, m_failure, m_page}) {
        addWidget(widget);
    }
    connect(&m_desk.reader(), &PageReader::stateChanged, this, &PagePanel::show);
    show(m_desk.reader().state());
}

QWidget *PagePanel::makeHint()
{
    auto *hint = new QWidget;
    auto *layout = new QVBoxLayout(hint);
    auto *words = new QLabel(tr("Paste or drop the address of a page above and press Enter.\n"
                                "Its streams appear here, to choose from."));
    words->setAlignment(Qt::AlignCenter);
    words->setWordWrap(true);
    layout->addStretch();
    layout->addWidget(new ThumbnailView, 0, Qt::AlignHCenter);
    layout->addWidget(words);
    layout->addStretch();
    return hint;
}

QWidget *PagePanel::makeBusy()
{
    m_busyAddress = new ElidedLabel(Qt::ElideMiddle);
    m_busyAddress->setAlignment(Qt::AlignCenter);
    auto *words = new QLabel(tr("Reading the page…"));
    words->setAlignment(Qt::AlignCenter);
    auto *bar = new QProgressBar;
    bar->setObjectName(QStringLiteral("busy"));
    bar->setAccessibleName(tr("The page is being read"));
    bar->setRange(0, 0);
    auto *cancelButton = new QPushButton(tr("&Cancel"));
    cancelButton->setObjectName(QStringLiteral("cancelReading"));
    connect(cancelButton, &QPushButton::clicked, &m_desk.reader(), &PageReader::cancel);

    auto *busy = new QWidget;
    auto *row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(bar, 2);
    row->addWidget(cancelButton);
    row->addStretch(1);
    auto *layout = new QVBoxLayout(busy);
    layout->addStretch();
    layout->addWidget(words);
    layout->addWidget(m_busyAddress);
    layout->addLayout(row);
    layout->addStretch();
    return busy;
}

QWidget *PagePanel::makeFailure()
{
    m_failureBox = new FailureBox;
    connect(m_failureBox, &FailureBox::logRequested, this, &PagePanel::logRequested);
    auto *failure = new QWidget;
    auto *layout = new QVBoxLayout(failure);
    layout->addStretch();
    layout->addWidget(m_failureBox);
    layout->addStretch();
    return failure;
}

QWidget *PagePanel::makePage()
{
    m_streams = new StreamPanel(m_desk.streams());
    auto *form = new PlanForm(m_desk.plan());
    connect(m_streams, &StreamPanel::chosen, &m_desk, &Desk::chooseStream);
    connect(form, &PlanForm::downloadRequested, &m_desk, &Desk::startDownload);

    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    layout->addLayout(makeCard());
    layout->addWidget(m_streams, 1);
    layout->addWidget(form);
    return page;
}

QLayout *PagePanel::makeCard()
{
    m_thumbnail = new ThumbnailView;
    m_title = new QLabel;
    m_title->setObjectName(QStringLiteral("title"));
    m_title->setTextFormat(Qt::PlainText);
    m_title->setWordWrap(true);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.3);
    font.setBold(true);
    m_title->setFont(font);
    m_duration = new QLabel;
    m_duration->setObjectName(QStringLiteral("duration"));
    m_address = new ElidedLabel(Qt::ElideMiddle);

    auto *texts = new QVBoxLayout;
    texts->addStretch();
    texts->addWidget(m_title);
    texts->addWidget(m_duration);
    texts->addWidget(m_address);
    texts->addStretch();
    auto *card = new QHBoxLayout;
    card->addWidget(m_thumbnail);
    card->addSpacing(fontMetrics().averageCharWidth());
    card->addLayout(texts, 1);
    connect(&m_desk.thumbnail(), &ThumbnailLoader::changed, m_thumbnail,
            [this] { m_thumbnail->setPicture(m_desk.thumbnail().picture()); });
    return card;
}

void PagePanel::show(PageReader::State state)
{
    switch (state) {
    case PageReader::State::Empty:
        setCurrentWidget(m_hint);
        break;
    case PageReader::State::Reading:
        m_busyAddress->setText(m_desk.reader().url());
        setCurrentWidget(m_busy);
        break;
    case PageReader::State::Failed:
        m_failureBox->setTexts(m_desk.reader().problem(), m_desk.reader().toolWords());
        setCurrentWidget(m_failure);
        break;
    case PageReader::State::Ready:
        showPage();
        break;
    }
}

void PagePanel::showPage()
{
    const Nox::WebMediaInfo page = m_desk.reader().page();
    const QString title = NoxHost::printableLine(page.getTitle());
    m_title->setText(title.size() > maximumTitle ? title.left(maximumTitle) + QStringLiteral("…") : title);
    const qint64 seconds = page.getDuration();
    m_duration->setText(seconds > 0 ? tr("Duration %1").arg(NoxHost::TransferFigures::timeText(seconds))
                                    : tr("Duration unknown"));
    m_address->setText(m_desk.reader().url());
    setCurrentWidget(m_page);
    m_streams->focusTable();
}

} // namespace NoxDesk
