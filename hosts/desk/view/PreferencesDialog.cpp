#include "hosts/desk/view/PreferencesDialog.h"

#include "hosts/desk/model/DeskSettings.h"
#include "hosts/desk/view/ReasonLabel.h"
#include "hosts/desk/view/ToolVersionLabel.h"
#include "hosts/desk/view/VerticalScrollArea.h"

#include <nox/jobs/Destination.h>
#include <nox/jobs/ToolSetup.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScreen>
#include <QSpinBox>

namespace NoxDesk {

namespace {

constexpr int renewalLines = 4;

} // namespace

PreferencesDialog::PreferencesDialog(DeskSettings &settings, QWidget *parent)
    : QDialog(parent)
    , m_settings(settings)
    , m_folder(new QLineEdit(QDir::toNativeSeparators(settings.folder())))
    , m_error(new ReasonLabel)
    , m_makeButton(new QPushButton(tr("Cr&eate folder")))
    , m_lines(new QComboBox)
    , m_withoutConversion(newBox(tr("&MP4 without conversion, where there is one"), QStringLiteral("withoutConversion"),
                                 settings.preferences().stream.withoutConversion))
    , m_soundOnly(newBox(tr("S&ound only"), QStringLiteral("soundOnly"), settings.preferences().stream.soundOnly))
    , m_mp3(
          newBox(tr("Convert sound without a picture to MP&3"), QStringLiteral("mp3"), settings.preferences().makesMp3))
    , m_parallel(new QSpinBox)
    , m_goesOn(newBox(tr("&Resume unfinished downloads when the program starts"), QStringLiteral("resumesAtStart"),
                      settings.preferences().resumesAtStart))
    , m_clipboard(newBox(tr("Offer addresses on the &clipboard"), QStringLiteral("offersClipboard"),
                         settings.preferences().offersClipboard))
    , m_limitRate(new QLineEdit(m_toolSettings.value(Nox::ToolSettings::limitRate)))
    , m_proxy(new QLineEdit(m_toolSettings.value(Nox::ToolSettings::proxy)))
    , m_browser(new QComboBox)
    , m_toolFile(new QLineEdit(settings.preferences().toolFile))
    , m_version(new ToolVersionLabel)
    , m_renewButton(new QPushButton)
    , m_renewalText(new WrappedText(renewalLines))
{
    setWindowTitle(tr("Preferences"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto *content = new QWidget;
    auto *form = new QFormLayout(content);
    form->setContentsMargins({});
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("&Folder for downloads:"), withBrowse(m_folder, QStringLiteral("preferredFolder"), true));
    addStreams(*form);
    addAddresses(*form);
    addNetwork(*form);
    addTool(*form);

    m_error->setObjectName(QStringLiteral("preferredFolderError"));
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
    auto *area = new VerticalScrollArea(content);
    area->setFocusPolicy(Qt::NoFocus); // scrolls to the child that gets the focus
    layout->addWidget(area, 1);
    layout->addWidget(m_error);
    layout->addWidget(m_makeButton, 0, Qt::AlignRight);
    layout->addWidget(buttons);
    resize(
        QSize(fontMetrics().averageCharWidth() * 80, sizeHint().height()).boundedTo(screen()->availableSize() * 0.9));
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
    m_lines->addItem(tr("the best available"), 0);
    for (const int lines : {2160, 1440, 1080, 720, 480, 360})
        m_lines->addItem(tr("at most %1p").arg(lines), lines);
    m_lines->setCurrentIndex(qMax(0, m_lines->findData(m_settings.preferences().stream.maximumHeight)));
    form.addRow(tr("&Quality proposed:"), m_lines);
    form.addRow(QString(), m_withoutConversion);
    form.addRow(QString(), m_soundOnly);
    form.addRow(QString(), m_mp3);
    m_parallel->setObjectName(QStringLiteral("parallel"));
    m_parallel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_parallel->setRange(Preferences::leastParallel, Preferences::mostParallel);
    m_parallel->setValue(m_settings.preferences().parallelDownloads);
    form.addRow(tr("Downloads at a &time:"), m_parallel);
    form.addRow(QString(), m_goesOn);
}

void PreferencesDialog::addAddresses(QFormLayout &form)
{
    auto *forgetButton = new QPushButton(tr("Forget the addresses &used"));
    forgetButton->setObjectName(QStringLiteral("forgetAddresses"));
    forgetButton->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    forgetButton->setEnabled(!m_settings.recentAddresses().isEmpty());
    connect(forgetButton, &QPushButton::clicked, this, [this, forgetButton] {
        m_settings.clearRecentAddresses();
        forgetButton->setEnabled(false);
    });
    form.addRow(tr("Addresses:"), m_clipboard);
    form.addRow(QString(), forgetButton);
}

/** The fields for the tool's own settings (tool.conf). */
void PreferencesDialog::addNetwork(QFormLayout &form)
{
    static const QRegularExpression rate(QStringLiteral("(\\d+(\\.\\d+)?[kKmMgG]?)?"));
    m_limitRate->setObjectName(QStringLiteral("limitRate"));
    m_limitRate->setPlaceholderText(tr("none; or bytes per second, such as 500K or 2M"));
    m_limitRate->setValidator(new QRegularExpressionValidator(rate, m_limitRate));
    form.addRow(tr("Speed &limit per download:"), m_limitRate);
    m_proxy->setObjectName(QStringLiteral("proxy"));
    m_proxy->setPlaceholderText(tr("proxy of the system; or socks5://127.0.0.1:9050"));
    form.addRow(tr("&Proxy:"), m_proxy);
    m_browser->setObjectName(QStringLiteral("browser"));
    m_browser->addItem(tr("none"), QString());
    for (const char *name : {"Firefox", "Chrome", "Chromium", "Brave", "Edge", "Opera", "Vivaldi"})
        m_browser->addItem(QLatin1String(name), QString::fromLatin1(name).toLower());
    const QString browser = m_toolSettings.value(Nox::ToolSettings::browser);
    if (m_browser->findData(browser) < 0)
        m_browser->addItem(browser, browser); // a value that the list does not have, such as one with a profile
    m_browser->setCurrentIndex(m_browser->findData(browser));
    form.addRow(tr("Cookies from the &browser:"), m_browser);
}

void PreferencesDialog::addTool(QFormLayout &form)
{
    m_toolFile->setPlaceholderText(tr("the included one"));
    m_toolFile->setClearButtonEnabled(true);
    form.addRow(tr("&Archive of the download tool:"), withBrowse(m_toolFile, QStringLiteral("toolFile"), false));
    form.addRow(tr("Its version:"), m_version);
    m_renewButton->setObjectName(QStringLiteral("renewTool"));
    m_renewButton->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_renewalText->setObjectName(QStringLiteral("renewal"));
    m_renewalText->setAccessibleName(tr("When the tool was renewed"));
    form.addRow(QString(), m_renewButton);
    form.addRow(QString(), m_renewalText);
    connect(m_renewButton, &QPushButton::clicked, this, &PreferencesDialog::renew);
    connect(m_toolFile, &QLineEdit::editingFinished, this, &PreferencesDialog::askVersion);
    const QFileInfo ownTool(Nox::ToolSetup::ownToolFile());
    const QString date = QLocale().toString(ownTool.lastModified(), QLocale::ShortFormat);
    showRenewal(ownTool.exists() ? tr("It was renewed on %1.").arg(date) : tr("It came with the program."));
    askVersion();
}

/** Starts to renew the tool, or cancels that. */
void PreferencesDialog::renew()
{
    if (m_renewal != nullptr && m_renewal->isRunning()) {
        m_renewal->cancel();
        return;
    }
    showRenewal(tr("Fetching the newest tool…"));
    m_renewButton->setText(tr("Cancel"));
    m_renewal = std::make_unique<Nox::ToolRenewalJob>();
    connect(m_renewal.get(), &Nox::Job::finished, this, [this](const Nox::Job *job) {
        if (job->error() == Nox::Job::NoError) {
            showRenewal(tr("Renewed: %1").arg(m_renewal->message()));
        } else {
            showRenewal(QStringList{job->errorString(), job->errorDetails()}.join(QLatin1Char('\n')).trimmed());
        }
        askVersion();
    });
    m_renewal->start();
}

void PreferencesDialog::showRenewal(const QString &outcome)
{
    m_renewButton->setText(tr("Rene&w the tool"));
    m_renewalText->showText(outcome);
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
    const QString file = m_toolFile->text().trimmed();
    m_version->ask(Nox::ToolSetup(file));
    m_renewButton->setVisible(file.isEmpty()); // renewing has no effect if another archive is selected
    m_renewalText->setVisible(file.isEmpty());
}

QString PreferencesDialog::folder() const
{
    return Nox::Destination::absolutePath(m_folder->text(), QDir::homePath());
}

/** Accepts the folder. @return whether it can be used; if not, an error is shown */
bool PreferencesDialog::checkFolder()
{
    const bool isChanged = folder() != m_settings.folder();
    const QString error = isChanged ? Nox::Destination::folderErrorString(folder()) : QString();
    m_error->explain(error, *m_folder);
    m_makeButton->setVisible(isChanged && !folder().isEmpty() && !QFileInfo::exists(folder()));
    if (!error.isEmpty()) {
        m_folder->setFocus();
    } else if (isChanged) {
        m_settings.setFolder(folder());
    }
    return error.isEmpty();
}

/** Closes the dialog; first cancels the renewal, which removes its temporary files then. */
void PreferencesDialog::done(int result)
{
    if (m_renewal == nullptr || !m_renewal->isRunning()) {
        QDialog::done(result);
    } else if (isEnabled()) {
        setEnabled(false);
        connect(m_renewal.get(), &Nox::Job::finished, this, [this, result] { QDialog::done(result); });
        m_renewal->cancel();
    }
}

void PreferencesDialog::accept()
{
    if (!m_limitRate->hasAcceptableInput()) {
        m_error->explain(tr("The speed limit must be a number, such as 500K or 2.5M."), *m_limitRate);
        m_limitRate->setFocus();
        return;
    }
    if (!checkFolder())
        return;
    m_toolSettings.setValue(Nox::ToolSettings::limitRate, m_limitRate->text());
    m_toolSettings.setValue(Nox::ToolSettings::proxy, m_proxy->text().trimmed());
    m_toolSettings.setValue(Nox::ToolSettings::browser, m_browser->currentData().toString());
    if (!m_toolSettings.save()) {
        m_error->explain(tr("The settings of the tool cannot be written to \"%1\".").arg(Nox::ToolSettings::fileName()),
                         *m_limitRate);
        return;
    }
    m_settings.setPreferences(
        {{m_lines->currentData().toInt(), m_withoutConversion->isChecked(), m_soundOnly->isChecked()},
         m_parallel->value(),
         m_clipboard->isChecked(),
         m_goesOn->isChecked(),
         m_mp3->isChecked(),
         m_toolFile->text().trimmed()});
    QDialog::accept();
}

} // namespace NoxDesk
