#pragma once

#include "hosts/desk/view/ElidedLabel.h"

#include <nox/jobs/ToolVersionJob.h>

#include <memory>

namespace NoxDesk {

/** The version of a download tool, once the tool has told it. */
class ToolVersionLabel : public ElidedLabel
{
    Q_OBJECT

public:
    explicit ToolVersionLabel(QWidget *parent = nullptr);

    /** Asks the tool of @p tools. */
    void ask(const Nox::ToolSetup &tools);

private:
    std::unique_ptr<Nox::ToolVersionJob> m_job;
};

} // namespace NoxDesk
