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
    , m_words(new WrappedText(maximumLines))
    , m_toolWords(new WrappedText(maximumLines))
    , m_logButton(new QPushButton(tr("Show log")))
{
    m_words->setObjectName(QStringLiteral("failureWords"));
    m_words->setAccessibleName(tr("What went wrong"));
    m_toolWords->setObjectName(QStringLiteral("toolWords"));
    m_toolWords->setAccessibleName(tr("What the download tool said"));
    m_logButton->setObjectName(QStringLiteral("showLog"));
    m_logButton->setAccessibleDescription(tr("Shows the log of the download tool"));
    connect(m_logButton, &QPushButton::clicked, this, &FailureBox::logRequested);

    auto *icon = new QLabel;
    const int edge = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(edge));

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(icon, 0, 0, 2, 1, Qt::AlignTop);
    layout->addWidget(m_words, 0, 1);
    layout->addWidget(m_toolWords, 1, 1);
    layout->addWidget(m_logButton, 0, 2, 2, 1, Qt::AlignTop);
    layout->setColumnStretch(1, 1);
}

void FailureBox::setTexts(const QString &words, const QString &toolWords)
{
    m_words->setWords(words);
    m_toolWords->setWords(toolWords);
    m_toolWords->setVisible(!toolWords.isEmpty());
}

QList<QWidget *> FailureBox::tabStops() const
{
    return {m_words, m_toolWords, m_logButton};
}

} // namespace NoxDesk
