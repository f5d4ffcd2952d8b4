#pragma once

#include <QFileDialog>
#include <QPointer>
#include <QWidget>

class QComboBox;
class QGridLayout;
class QLineEdit;
class QPushButton;

namespace NoxDesk {

class DownloadPlan;
class ReasonLabel;

/** The form for sound and destination of the next download, with the button that starts it. */
class PlanForm : public QWidget
{
    Q_OBJECT

public:
    /** @param plan must outlive the form */
    explicit PlanForm(DownloadPlan &plan, QWidget *parent = nullptr);

Q_SIGNALS:
    void downloadRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addSound(QGridLayout &layout);
    void addDestination(QGridLayout &layout);
    void refresh();
    void fillSounds();
    void browse();

    DownloadPlan &m_plan;
    QComboBox *m_sound;
    QList<QPair<QString, QString>> m_sounds; // its entries: text and format code
    ReasonLabel *m_soundError;
    QLineEdit *m_destination;
    QPushButton *m_browseButton;
    ReasonLabel *m_destinationError;
    QPushButton *m_folderButton;
    QPushButton *m_downloadButton;
    QPointer<QFileDialog> m_dialog;
};

} // namespace NoxDesk
