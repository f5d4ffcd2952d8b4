#pragma once

#include "hosts/desk/view/ElidedLabel.h"

#include <nox/jobs/ToolVersionJob.h>

#include <memory>

namespace NoxDesk {

/** Shows the version of the download tool, as soon as it is known. */
class ToolVersionLabel : public ElidedLabel
{
    Q_OBJECT

public:
    explicit ToolVersionLabel(QWidget *parent = nullptr);

    /** Asks the tool in @p tools for its version. */
    void ask(const Nox::ToolSetup &tools);

private:
    std::unique_ptr<Nox::ToolVersionJob> m_job;
};

} // namespace NoxDesk
