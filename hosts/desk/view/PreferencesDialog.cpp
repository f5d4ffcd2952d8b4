#include "hosts/desk/view/PreferencesDialog.h"

#include "hosts/desk/model/DeskSettings.h"
#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/view/ReasonLabel.h"
#include "hosts/desk/view/ToolVersionLabel.h"

#include <nox/jobs/Destination.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace NoxDesk {

PreferencesDialog::PreferencesDialog(DeskSettings &settings, QWidget *parent)
    : QDialog(parent)
    , m_settings(settings)
    , m_folder(new QLineEdit(QDir::toNativeSeparators(settings.folder())))
    , m_folderProblem(new ReasonLabel)
    , m_makeButton(new QPushButton(tr("Cr&eate folder")))
    , m_lines(new QComboBox)
    , m_withoutConversion(newBox(tr("&MP4 without conversion, where there is one"), QStringLiteral("withoutConversion"),
                                 settings.preferences().stream.withoutConversion))
    , m_soundOnly(newBox(tr("S&ound only"), QStringLiteral("soundOnly"), settings.preferences().stream.soundOnly))
    , m_parallel(new QSpinBox)
    , m_clipboard(newBox(tr("Offer addresses on the &clipboard"), QStringLiteral("offersClipboard"),
                         settings.preferences().offersClipboard))
    , m_toolFile(new QLineEdit(settings.preferences().toolFile))
    , m_version(new ToolVersionLabel)
{
    setWindowTitle(tr("Preferences"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("&Folder for downloads:"), withBrowse(m_folder, QStringLiteral("preferredFolder"), true));
    addStreams(*form);
    m_parallel->setObjectName(QStringLiteral("parallel"));
    m_parallel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_parallel->setRange(Preferences::leastParallel, Preferences::mostParallel);
    m_parallel->setValue(settings.preferences().parallelDownloads);
    form->addRow(tr("Downloads at a &time:"), m_parallel);
    auto *forgetButton = new QPushButton(tr("Forget the addresses &used"));
    forgetButton->setObjectName(QStringLiteral("forgetAddresses"));
    forgetButton->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    forgetButton->setEnabled(!settings.recentAddresses().isEmpty());
    connect(forgetButton, &QPushButton::clicked, this, [this, forgetButton] {
        m_settings.clearRecentAddresses();
        forgetButton->setEnabled(false);
    });
    form->addRow(tr("Addresses:"), m_clipboard);
    form->addRow(QString(), forgetButton);
    addTool(*form);

    m_folderProblem->setObjectName(QStringLiteral("preferredFolderProblem"));
    m_makeButton->setObjectName(QStringLiteral("makePreferredFolder"));
    m_makeButton->hide();
    connect(m_makeButton, &QPushButton::clicked, this, [this] {
        QDir().mkpath(folder());
        accept();
    });
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch();
    layout->addWidget(m_folderProblem);
    layout->addWidget(m_makeButton, 0, Qt::AlignRight);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 80, sizeHint().height());
}

QCheckBox *PreferencesDialog::newBox(const QString &text, const QString &name, bool isChecked)
{
    auto *box = new QCheckBox(text);
    box->setObjectName(name);
    box->setChecked(isChecked);
    return box;
}

void PreferencesDialog::addStreams(QFormLayout &form)
{
    m_lines->setObjectName(QStringLiteral("maximumLines"));
    m_lines->addItem(tr("the best there is"), 0);
    for (const int lines : {2160, 1440, 1080, 720, 480, 360})
        m_lines->addItem(tr("at most %1p").arg(lines), lines);
    m_lines->setCurrentIndex(qMax(0, m_lines->findData(m_settings.preferences().stream.maximumHeight)));
    form.addRow(tr("&Quality proposed:"), m_lines);
    form.addRow(QString(), m_withoutConversion);
    form.addRow(QString(), m_soundOnly);
}

void PreferencesDialog::addTool(QFormLayout &form)
{
    m_toolFile->setPlaceholderText(tr("the one that came along"));
    m_toolFile->setClearButtonEnabled(true);
    form.addRow(tr("&Archive of the download tool:"), withBrowse(m_toolFile, QStringLiteral("toolFile"), false));
    form.addRow(tr("Its version:"), m_version);
    connect(m_toolFile, &QLineEdit::editingFinished, this, &PreferencesDialog::askVersion);
    askVersion();
}

QWidget *PreferencesDialog::withBrowse(QLineEdit *field, const QString &name, bool isFolder)
{
    field->setObjectName(name);
    auto *button = new QPushButton(tr("Browse…"));
    field->setAccessibleName(isFolder ? tr("Folder for downloads") : tr("Archive of the download tool"));
    button->setAccessibleName(isFolder ? tr("Browse for the folder") : tr("Browse for the archive"));
    connect(button, &QPushButton::clicked, this, [this, field, isFolder] { browse(field, isFolder); });
    auto *row = new QWidget;
    row->setFocusProxy(field);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(field, 1);
    layout->addWidget(button);
    return row;
}

void PreferencesDialog::browse(QLineEdit *field, bool isFolder)
{
    auto *dialog = new QFileDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(isFolder ? QFileDialog::Directory : QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::ShowDirsOnly, isFolder);
    const QFileInfo now(field->text());
    dialog->setDirectory(isFolder ? now.absoluteFilePath() : now.absolutePath());
    connect(dialog, &QFileDialog::fileSelected, field, [this, field](const QString &path) {
        field->setText(QDir::toNativeSeparators(path));
        askVersion();
    });
    dialog->open();
}

void PreferencesDialog::askVersion()
{
    m_version->ask(Nox::ToolSetup(m_toolFile->text().trimmed()));
}

QString PreferencesDialog::folder() const
{
    return DownloadPlan::absolutePath(m_folder->text(), QDir::homePath());
}

void PreferencesDialog::accept()
{
    if (folder() != m_settings.folder()) {
        const QString problem = Nox::Destination::folderErrorString(folder());
        m_folderProblem->explain(problem, *m_folder);
        m_makeButton->setVisible(!folder().isEmpty() && !QFileInfo::exists(folder()));
        if (!problem.isEmpty()) {
            m_folder->setFocus();
            return;
        }
        m_settings.setFolder(folder());
    }
    m_settings.setPreferences(
        {{m_lines->currentData().toInt(), m_withoutConversion->isChecked(), m_soundOnly->isChecked()},
         m_parallel->value(),
         m_clipboard->isChecked(),
         m_toolFile->text().trimmed()});
    QDialog::accept();
}

} // namespace NoxDesk
