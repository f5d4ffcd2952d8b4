#pragma once

#include "hosts/desk/model/PageReader.h"

#include <QWidget>

class QLabel;
class QStackedWidget;

namespace NoxDesk {

class Desk;
class ElidedLabel;
class FailureBox;
class StreamPanel;
class ThumbnailView;
class WrappedText;

/** The page: nothing yet, or what it holds and the choices; above it, that another one is being read or has failed. */
class PagePanel : public QWidget
{
    Q_OBJECT

public:
    /** @param desk must outlive the panel */
    explicit PagePanel(Desk &desk, QWidget *parent = nullptr);

    /** Moves the keyboard to the streams, if there are any. */
    void focusStreams();

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
    ElidedLabel *m_busyAddress = nullptr;
    QWidget *m_busy;
    FailureBox *m_failureBox = nullptr;
    ElidedLabel *m_failedAddress = nullptr;
    QWidget *m_failure;
    ThumbnailView *m_thumbnail = nullptr;
    WrappedText *m_title = nullptr;
    QLabel *m_duration = nullptr;
    ElidedLabel *m_address = nullptr;
    StreamPanel *m_streams = nullptr;
    QWidget *m_hint;
    QWidget *m_page;
    QStackedWidget *m_content;
};

} // namespace NoxDesk
