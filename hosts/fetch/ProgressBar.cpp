#include "ProgressBar.h"

#include "Console.h"
#include "ProgressLine.h"

namespace NoxFetch {

namespace {

constexpr int redrawMs = 120;
constexpr int lineMs = 1000;
constexpr int linePercents = 10;

} // namespace

ProgressBar::ProgressBar(Console &console, QObject *parent)
    : QObject(parent)
    , m_console(console)
{
    m_redraw.setInterval(redrawMs);
    connect(&m_redraw, &QTimer::timeout, this, &ProgressBar::draw);
}

void ProgressBar::begin(const QString &activity)
{
    m_figures = {};
    m_linePercent = 0;
    proceed(activity);
}

void ProgressBar::proceed(const QString &activity)
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

void ProgressBar::advance(const NoxHost::TransferFigures &figures)
{
    m_figures = figures;
    const int percent = figures.percent();
    if (m_console.isTerminal() || percent < m_linePercent + linePercents || m_sinceLine.elapsed() < lineMs)
        return;
    m_linePercent = percent;
    m_sinceLine.start();
    m_console.note(plainLine(m_activity, figures));
}

void ProgressBar::stop()
{
    m_redraw.stop();
    m_console.clearStatus();
}

void ProgressBar::draw()
{
    m_console.showStatus(statusLine(m_activity, m_figures, m_console.width(), m_tick++));
}

} // namespace NoxFetch
