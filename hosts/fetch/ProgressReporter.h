#pragma once

#include <nox/jobs/TransferFigures.h>

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

namespace NoxFetch {

class Console;

/**
 * Shows the progress on standard error: on a terminal with a bar that is updated several times a second, else with
 * a line from time to time.
 */
class ProgressReporter : public QObject
{
    Q_OBJECT

public:
    explicit ProgressReporter(Console &console, QObject *parent = nullptr);

    /** A new activity begins, such as "extracting". */
    void begin(const QString &activity);

    /** The activity changes within the same work: the figures stay until new ones arrive. */
    void proceed(const QString &activity);

    /** New figures have arrived. */
    void advance(const Nox::TransferFigures &figures);

    /** The work is over. */
    void stop();

private:
    void draw();

    Console &m_console;
    QString m_activity;
    Nox::TransferFigures m_figures;
    QTimer m_redraw;
    int m_tick = 0;
    QElapsedTimer m_sinceLine;
    int m_linePercent = 0;
};

} // namespace NoxFetch
