#include "hosts/desk/view/PlanForm.h"

#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/view/ReasonLabel.h"
#include "hosts/desk/view/ShownText.h"

#include <nox/jobs/StreamText.h>

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolTip>

namespace NoxDesk {

using Nox::StreamText;

PlanForm::PlanForm(DownloadPlan &plan, QWidget *parent)
    : QWidget(parent)
    , m_plan(plan)
    , m_sound(new QComboBox)
    , m_soundError(new ReasonLabel)
    , m_destination(new QLineEdit)
    , m_browseButton(new QPushButton(tr("&Browse…")))
    , m_destinationError(new ReasonLabel)
    , m_folderButton(new QPushButton(tr("Create f&older")))
    , m_downloadButton(new QPushButton(tr("&Download")))
{
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->setColumnStretch(1, 1);
    addSound(*layout);
    addDestination(*layout);
    m_downloadButton->installEventFilter(this);
    m_destination->installEventFilter(this);

    connect(m_downloadButton, &QPushButton::clicked, this, &PlanForm::downloadRequested);
    connect(&m_plan, &DownloadPlan::changed, this, &PlanForm::refresh);
    refresh();
}

void PlanForm::addSound(QGridLayout &layout)
{
    m_sound->setObjectName(QStringLiteral("sound"));
    m_sound->setAccessibleName(tr("Sound to join with the picture"));
    m_sound->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    constexpr int characters = 12; // visible in the narrowest window
    m_sound->setMinimumContentsLength(characters);
    m_soundError->setObjectName(QStringLiteral("soundError"));
    auto *label = new QLabel(tr("&Sound:"));
    label->setBuddy(m_sound);
    layout.addWidget(label, 0, 0);
    layout.addWidget(m_sound, 0, 1, 1, 3);
    layout.addWidget(m_soundError, 1, 1, 1, 3);
    connect(m_sound, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { m_plan.setAudio(m_sound->currentData().toString()); });
}

void PlanForm::addDestination(QGridLayout &layout)
{
    m_destination->setObjectName(QStringLiteral("destination"));
    m_destination->setAccessibleName(tr("File to save to"));
    m_browseButton->setObjectName(QStringLiteral("browse"));
    m_destinationError->setObjectName(QStringLiteral("destinationError"));
    auto *label = new QLabel(tr("&File:"));
    label->setBuddy(m_destination);
    layout.addWidget(label, 2, 0);
    layout.addWidget(m_destination, 2, 1);
    layout.addWidget(m_browseButton, 2, 2);
    m_folderButton->setObjectName(QStringLiteral("makeFolder"));
    m_folderButton->hide();
    m_downloadButton->setObjectName(QStringLiteral("download"));
    layout.addWidget(m_downloadButton, 2, 3);
    layout.addWidget(m_destinationError, 3, 1, 1, 2);
    layout.addWidget(m_folderButton, 3, 3, Qt::AlignTop);
    connect(m_folderButton, &QPushButton::clicked, this, [this] {
        m_plan.makeFolder();
        m_downloadButton->setFocus();
    });
    connect(m_destination, &QLineEdit::textEdited, &m_plan, &DownloadPlan::setDestination);
    connect(m_destination, &QLineEdit::editingFinished, &m_plan, &DownloadPlan::completeDestination);
    connect(m_destination, &QLineEdit::returnPressed, this, &PlanForm::downloadRequested);
    connect(m_browseButton, &QPushButton::clicked, this, &PlanForm::browse);
}

void PlanForm::refresh()
{
    fillSounds();
    if (m_destination->text() != m_plan.destination())
        m_destination->setText(m_plan.destination());
    const bool hasStream = m_plan.stream().isValid();
    const QString soundError = m_plan.soundError();
    m_soundError->explain(soundError.isEmpty() ? m_plan.warning() : soundError, *m_sound);
    const QString error = hasStream ? m_plan.destinationError() : QString();
    m_destinationError->explain(error.isEmpty() && hasStream ? m_plan.destinationWarning() : error, *m_destination);
    m_folderButton->setVisible(hasStream && !m_plan.missingFolder().isEmpty());
    m_downloadButton->setEnabled(m_plan.isComplete());
}

void PlanForm::fillSounds()
{
    QList<QPair<QString, QString>> entries;
    const QList<Nox::MediaProfile> sounds = m_plan.audioChoices();
    for (const Nox::MediaProfile &sound : sounds) {
        const QString label = StreamText::label(sound);
        entries += {tr("%1, %2", "container, bit rate")
                        .arg(StreamText::container(sound),
                             label.isEmpty() ? tr("unknown quality (%1)").arg(sound.getName()) : label),
                    sound.getName()};
    }
    const bool isSound = m_plan.stream().getMediaType() == Nox::MEDIA_TYPE_AUDIO;
    entries += {m_plan.takesAudio()            ? tr("None, the picture only")
                    : isSound                  ? tr("The stream has sound only")
                    : m_plan.stream().isDash() ? tr("The page has none")
                                               : tr("Part of the stream"),
                QString()};
    const QSignalBlocker blocker(m_sound);
    m_sound->setEnabled(m_plan.takesAudio());
    if (entries != m_sounds) { // else an open drop-down keeps its highlighted entry
        m_sounds = entries;
        m_sound->clear();
        for (const auto &[text, code] : entries)
            m_sound->addItem(text, code);
    }
    m_sound->setCurrentIndex(m_sound->findData(m_plan.audio()));
}

void PlanForm::browse()
{
    if (m_dialog != nullptr)
        return;
    m_dialog = new QFileDialog(this, tr("Save as"));
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setAcceptMode(QFileDialog::AcceptSave);
    // No question about replacing: existing files are never replaced, and the form shows that error.
    m_dialog->setOption(QFileDialog::DontConfirmOverwrite);
    const QFileInfo file(m_plan.path());
    m_dialog->setDirectory(file.absolutePath());
    m_dialog->selectFile(file.fileName());
    m_dialog->setDefaultSuffix(m_plan.suffix());
    connect(m_dialog, &QFileDialog::fileSelected, &m_plan, [this](const QString &path) {
        m_plan.setDestination(QDir::toNativeSeparators(path));
        m_plan.completeDestination();
    });
    m_dialog->open();
}

/** Ignores double clicks and key repeat, which would start a second download of the page. */
bool PlanForm::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_destination
        && event->type() == QEvent::ToolTip) { // not as a property, which would be read as markup
        const QPoint place = static_cast<QHelpEvent *>(event)->globalPos();
        QToolTip::showText(place, ShownText::breakable(m_plan.destination()), m_destination);
        return true;
    }
    const bool isSecondClick = watched == m_downloadButton && event->type() == QEvent::MouseButtonDblClick;
    const auto *key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent *>(event) : nullptr;
    const bool isRepeated =
        key != nullptr && key->isAutoRepeat() && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter);
    return isSecondClick || isRepeated || QWidget::eventFilter(watched, event);
}

} // namespace NoxDesk
