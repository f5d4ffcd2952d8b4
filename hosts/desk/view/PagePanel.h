#pragma once

#include "hosts/desk/model/PageReader.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace NoxDesk {

class Desk;
class ElidedLabel;
class FailureBox;
class ReasonLabel;
class StreamPanel;
class ThumbnailView;
class VerticalScrollArea;
class WrappedText;

/**
 * The page: nothing yet, or what it holds and the choices; above it, that another one is being read or has failed. In a
 * small window the table of streams gives way first, then what stands above it scrolls; the form is always seen whole.
 */
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
    void listRequested(); ///< The user wants to see all videos of the page.

private:
    QWidget *makeHint();
    QWidget *makeBusy();
    QWidget *makeFailure();
    QWidget *makeCard();
    QWidget *makeChoices();
    VerticalScrollArea *makeHead();
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
    QLabel *m_outdated = nullptr; // above the card
    ElidedLabel *m_address = nullptr;
    ReasonLabel *m_warnings = nullptr;
    QPushButton *m_videosButton = nullptr;
    StreamPanel *m_streams = nullptr;
    QWidget *m_hint;
    QWidget *m_card;
    VerticalScrollArea *m_head;
    QWidget *m_choices;
    QStackedWidget *m_content;
};

} // namespace NoxDesk
