#include "hosts/desk/view/FailureBox.h"

#include <QGridLayout>
#include <QPushButton>
#include <QStyle>

namespace NoxDesk {

FailureBox::FailureBox(QWidget *parent)
    : QWidget(parent)
    , m_words(newTextLabel())
    , m_toolWords(newTextLabel())
    , m_logButton(new QPushButton(tr("Show log")))
{
    m_words->setObjectName(QStringLiteral("failureWords"));
    m_toolWords->setObjectName(QStringLiteral("toolWords"));
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

QLabel *FailureBox::newTextLabel()
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

void FailureBox::setTexts(const QString &words, const QString &toolWords)
{
    m_words->setText(words);
    m_toolWords->setText(toolWords);
    m_toolWords->setVisible(!toolWords.isEmpty());
}

} // namespace NoxDesk
