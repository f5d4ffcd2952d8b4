#pragma once

#include "hosts/desk/view/WrappedText.h"

namespace NoxDesk {

/** The error message of the field above it. Hidden while it is empty. */
class ReasonLabel : public WrappedText
{
    Q_OBJECT

public:
    explicit ReasonLabel(QWidget *parent = nullptr);

    /** Shows @p message, or nothing when it is empty. Screen readers find it as the description of @p field. */
    void explain(const QString &message, QWidget &field);
};

} // namespace NoxDesk
