#include "hosts/fetch/ProgressReporter.h"

#include "hosts/fetch/Console.h"
#include "hosts/fetch/ProgressLine.h"

namespace NoxFetch {

namespace {

constexpr int redrawMs = 120;
constexpr int lineMs = 1000;
constexpr int linePercents = 10;
constexpr int unknownMs = 10000; // interval of lines if there is no percentage

} // namespace

ProgressReporter::ProgressReporter(Console &console, QObject *parent)
    : QObject(parent)
    , m_console(console)
{
    m_redraw.setInterval(redrawMs);
    connect(&m_redraw, &QTimer::timeout, this, &ProgressReporter::draw);
}

void ProgressReporter::begin(const QString &activity)
{
    m_figures = {};
    m_linePercent = 0;
    proceed(activity);
}

void ProgressReporter::proceed(const QString &activity)
{
    m_activity = activity;
    m_sinceLine.start();
    if (m_console.isTerminal()) {
        draw();
        m_redraw.start();
    } else {
        m_console.note(activity);
    }
}

void ProgressReporter::advance(const Nox::TransferFigures &figures)
{
    m_figures = figures;
    const int percent = figures.percent();
    const bool isDue = figures.total() > 0 ? percent >= m_linePercent + linePercents && m_sinceLine.elapsed() >= lineMs
                                           : figures.processed() > 0 && m_sinceLine.elapsed() >= unknownMs;
    if (m_console.isTerminal() || !isDue)
        return;
    m_linePercent = percent;
    m_sinceLine.start();
    m_console.note(plainLine(m_activity, figures));
}

void ProgressReporter::stop()
{
    m_redraw.stop();
    m_console.clearStatus();
}

void ProgressReporter::draw()
{
    m_console.showStatus(statusLine(m_activity, m_figures, m_console.width(), m_tick++));
}

} // namespace NoxFetch
