#pragma once

#include <nox/jobs/ToolRenewalJob.h>
#include <nox/jobs/ToolSettings.h>

#include <QDialog>

#include <memory>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace NoxDesk {

class DeskSettings;
class ReasonLabel;
class ToolVersionLabel;
class WrappedText;

/** The dialog for the preferences. When accepted, it writes the settings of this program and of the tool. */
class PreferencesDialog : public QDialog
{
    Q_OBJECT

public:
    /** @param settings must outlive the dialog */
    explicit PreferencesDialog(DeskSettings &settings, QWidget *parent = nullptr);

    void accept() override;
    void done(int result) override;

private:
    void addStreams(QFormLayout &form);
    void addAddresses(QFormLayout &form);
    void addNetwork(QFormLayout &form);
    void addTool(QFormLayout &form);
    bool checkFolder();
    QCheckBox *newBox(const QString &text, const QString &name, bool isChecked);
    QWidget *withBrowse(QLineEdit *field, const QString &name, bool isFolder);
    void browse(QLineEdit *field, bool isFolder);
    void askVersion();
    void renew();
    void showRenewal(const QString &outcome);
    QString folder() const;

    DeskSettings &m_settings;
    Nox::ToolSettings m_toolSettings;
    QLineEdit *m_folder;
    ReasonLabel *m_error;
    QPushButton *m_makeButton;
    QComboBox *m_lines;
    QCheckBox *m_withoutConversion;
    QCheckBox *m_soundOnly;
    QCheckBox *m_mp3;
    QSpinBox *m_parallel;
    QCheckBox *m_goesOn;
    QCheckBox *m_clipboard;
    QLineEdit *m_limitRate;
    QLineEdit *m_proxy;
    QComboBox *m_browser;
    QLineEdit *m_toolFile;
    ToolVersionLabel *m_version;
    QPushButton *m_renewButton;
    WrappedText *m_renewalText;
    std::unique_ptr<Nox::ToolRenewalJob> m_renewal; // the last one
};

} // namespace NoxDesk
