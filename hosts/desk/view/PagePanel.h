#pragma once

#include "hosts/desk/model/PageReader.h"

#include <QStackedWidget>

class QLabel;

namespace NoxDesk {

class Desk;
class ElidedLabel;
class FailureBox;
class StreamPanel;
class ThumbnailView;

/** The page: nothing yet, being read, failed, or what it holds and the choices. */
class PagePanel : public QStackedWidget
{
    Q_OBJECT

public:
    /** @param desk must outlive the panel */
    explicit PagePanel(Desk &desk, QWidget *parent = nullptr);

Q_SIGNALS:
    void logRequested();

private:
    QWidget *makeHint();
    QWidget *makeBusy();
    QWidget *makeFailure();
    QWidget *makePage();
    QLayout *makeCard();
    void show(PageReader::State state);
    void showPage();

    Desk &m_desk;
    QWidget *m_hint;
    QLabel *m_busyAddress = nullptr;
    QWidget *m_busy;
    FailureBox *m_failureBox = nullptr;
    QWidget *m_failure;
    ThumbnailView *m_thumbnail = nullptr;
    QLabel *m_title = nullptr;
    QLabel *m_duration = nullptr;
    ElidedLabel *m_address = nullptr;
    StreamPanel *m_streams = nullptr;
    QWidget *m_page;
};

} // namespace NoxDesk
