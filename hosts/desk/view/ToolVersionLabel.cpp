#include "hosts/desk/view/ToolVersionLabel.h"

namespace NoxDesk {

using Nox::ToolVersionJob;

namespace {

constexpr int usualCharacters = 24;

} // namespace

ToolVersionLabel::ToolVersionLabel(QWidget *parent)
    : ElidedLabel(Qt::ElideRight, parent)
{
    setObjectName(QStringLiteral("toolVersion"));
    setMinimumWidth(fontMetrics().averageCharWidth() * usualCharacters);
}

void ToolVersionLabel::ask(const Nox::ToolSetup &tools)
{
    setText(tr("asking the tool…"));
    m_job = std::make_unique<ToolVersionJob>(tools);
    connect(m_job.get(), &ToolVersionJob::finished, this, [this] {
        const bool isKnown = m_job->error() == Nox::Job::NoError;
        setText(isKnown ? m_job->version() : m_job->errorString());
    });
    m_job->start();
}

} // namespace NoxDesk
