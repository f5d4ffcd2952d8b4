#pragma once

#include <QDialog>

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

/** What the user prefers. Written to the settings when it is accepted. */
class PreferencesDialog : public QDialog
{
    Q_OBJECT

public:
    /** @param settings must outlive the dialog */
    explicit PreferencesDialog(DeskSettings &settings, QWidget *parent = nullptr);

    void accept() override;

private:
    void addStreams(QFormLayout &form);
    void addTool(QFormLayout &form);
    QCheckBox *newBox(const QString &text, const QString &name, bool isChecked);
    QWidget *withBrowse(QLineEdit *field, const QString &name, bool isFolder);
    void browse(QLineEdit *field, bool isFolder);
    void askVersion();
    QString folder() const;

    DeskSettings &m_settings;
    QLineEdit *m_folder;
    ReasonLabel *m_folderProblem;
    QPushButton *m_makeButton;
    QComboBox *m_lines;
    QCheckBox *m_withoutConversion;
    QCheckBox *m_soundOnly;
    QSpinBox *m_parallel;
    QCheckBox *m_clipboard;
    QLineEdit *m_toolFile;
    ToolVersionLabel *m_version;
};

} // namespace NoxDesk
