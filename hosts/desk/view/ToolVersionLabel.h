#pragma once

#include "hosts/common/ToolSetup.h"
#include "hosts/desk/view/ElidedLabel.h"

namespace NoxHost {
class ToolVersionJob;
}

namespace NoxDesk {

/** The version of a download tool, once the tool has told it. */
class ToolVersionLabel : public ElidedLabel
{
    Q_OBJECT

public:
    explicit ToolVersionLabel(QWidget *parent = nullptr);

    /** Asks the tool of @p tools. */
    void ask(const NoxHost::ToolSetup &tools);

private:
    NoxHost::ToolVersionJob *m_job = nullptr;
};

} // namespace NoxDesk
