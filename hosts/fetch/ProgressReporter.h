#pragma once

#include <nox/jobs/TransferFigures.h>

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

namespace NoxFetch {

class Console;

/**
 * Tells the user on standard error what is going on: with a bar that is drawn anew several times a
 * second on a terminal, else with a line now and then.
 */
class ProgressReporter : public QObject
{
    Q_OBJECT

public:
    explicit ProgressReporter(Console &console, QObject *parent = nullptr);

    /** Something new begins, such as "extracting". */
    void begin(const QString &activity);

    /** The same goes on with something else: the figures stand until there are new ones. */
    void proceed(const QString &activity);

    /** It has got on. */
    void advance(const Nox::TransferFigures &figures);

    /** Nothing more to tell. */
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
