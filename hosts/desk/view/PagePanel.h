#pragma once

#include "hosts/desk/model/PageReader.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace NoxDesk {

class DeskController;
class ElidedLabel;
class FailureBox;
class ReasonLabel;
class StreamPanel;
class ThumbnailView;
class VerticalScrollArea;
class WrappedText;

/**
 * Shows the page and the choices for its download; above them the state of a page that is being read or has failed. In
 * a small window the table of streams shrinks first, then the part above it scrolls. The form is always fully visible.
 */
class PagePanel : public QWidget
{
    Q_OBJECT

public:
    /** @param controller must outlive the panel */
    explicit PagePanel(DeskController &controller, QWidget *parent = nullptr);

    /** Sets the focus to the table of streams, if there are any. */
    void focusStreams();

Q_SIGNALS:
    void logRequested();
    void listRequested(); ///< The user asked for the list of all videos of the page.

private:
    QWidget *makeHint();
    QWidget *makeBusy();
    QWidget *makeFailure();
    QWidget *makeCard();
    QWidget *makeChoices();
    VerticalScrollArea *makeHead();
    void show(PageReader::State state);
    void showPage();

    DeskController &m_controller;
    ElidedLabel *m_busyAddress = nullptr;
    QWidget *m_busy;
    FailureBox *m_failureBox = nullptr;
    ElidedLabel *m_failedAddress = nullptr;
    QWidget *m_failure;
    ThumbnailView *m_thumbnail = nullptr;
    WrappedText *m_title = nullptr;
    QLabel *m_duration = nullptr;
    QLabel *m_outdated = nullptr; // shown above the page
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
