#include "hosts/desk/view/ToolVersionLabel.h"

#include "hosts/common/ToolVersionJob.h"

namespace NoxDesk {

using NoxHost::ToolVersionJob;

namespace {

constexpr int usualCharacters = 24;

} // namespace

ToolVersionLabel::ToolVersionLabel(QWidget *parent)
    : ElidedLabel(Qt::ElideRight, parent)
{
    setObjectName(QStringLiteral("toolVersion"));
    setMinimumWidth(fontMetrics().averageCharWidth() * usualCharacters);
}

void ToolVersionLabel::ask(const NoxHost::ToolSetup &tools)
{
    delete m_job;
    m_job = nullptr;
    if (const QString problem = tools.problem(); !problem.isEmpty()) {
        setText(problem);
        return;
    }
    setText(tr("asking the tool…"));
    m_job = new ToolVersionJob(tools, this);
    connect(m_job, &ToolVersionJob::finished, this, &ToolVersionLabel::setText);
    connect(m_job, &ToolVersionJob::failed, this, &ToolVersionLabel::setText);
    m_job->start();
}

} // namespace NoxDesk
