#pragma once

#include <nox/jobs/PlaylistJob.h>

#include <QDialog>

#include <memory>

class QLabel;
class QListWidget;
class QPushButton;

namespace NoxDesk {

/** A list of the videos of a page, from which the user selects. It is loaded in steps. */
class PlaylistDialog : public QDialog
{
    Q_OBJECT

public:
    explicit PlaylistDialog(const QString &url, const Nox::ToolSetup &tools, QWidget *parent = nullptr);

Q_SIGNALS:
    void chosen(const QStringList &addresses);

private:
    void listMore();
    void add(const Nox::PlaylistEntry &entry);
    void tickAll(bool isTicked);
    QStringList ticked() const;
    void refresh();

    QString m_url;
    Nox::ToolSetup m_tools;
    std::unique_ptr<Nox::PlaylistJob> m_job; // for the last step
    int m_next = 1;                          // number of the next video
    QListWidget *m_list;
    QLabel *m_state;
    QPushButton *m_moreButton;
    QPushButton *m_downloadButton = nullptr;
};

} // namespace NoxDesk
