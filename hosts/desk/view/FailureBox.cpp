#include "hosts/desk/view/FailureBox.h"

#include "hosts/desk/view/WrappedText.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace NoxDesk {

namespace {

constexpr int maximumLines = 6;

} // namespace

FailureBox::FailureBox(QWidget *parent)
    : QWidget(parent)
    , m_message(new WrappedText(maximumLines))
    , m_details(new WrappedText(maximumLines))
    , m_logButton(new QPushButton(tr("Show log")))
{
    m_message->setObjectName(QStringLiteral("failureMessage"));
    m_message->setAccessibleName(tr("Error message"));
    m_details->setObjectName(QStringLiteral("failureDetails"));
    m_details->setAccessibleName(tr("Messages of the download tool"));
    m_logButton->setObjectName(QStringLiteral("showLog"));
    m_logButton->setAccessibleDescription(tr("Shows the log of the download tool"));
    connect(m_logButton, &QPushButton::clicked, this, &FailureBox::logRequested);

    auto *icon = new QLabel;
    const int edge = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(edge));

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(icon, 0, 0, 2, 1, Qt::AlignTop);
    layout->addWidget(m_message, 0, 1);
    layout->addWidget(m_details, 1, 1);
    layout->addWidget(m_logButton, 0, 2, 2, 1, Qt::AlignTop);
    layout->setColumnStretch(1, 1);
}

void FailureBox::setTexts(const QString &message, const QString &details)
{
    m_message->showText(message);
    m_details->showText(details);
    m_details->setVisible(!details.isEmpty());
}

QList<QWidget *> FailureBox::tabStops() const
{
    return {m_message, m_details, m_logButton};
}

} // namespace NoxDesk
