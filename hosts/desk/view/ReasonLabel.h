#pragma once

#include "hosts/desk/view/WrappedText.h"

namespace NoxDesk {

/** Why the field above it is refused. Hidden while there is no reason. */
class ReasonLabel : public WrappedText
{
    Q_OBJECT

public:
    explicit ReasonLabel(QWidget *parent = nullptr);

    /** Shows @p words, or nothing when they are empty, and tells @p field's readers of them. */
    void explain(const QString &words, QWidget &field);
};

} // namespace NoxDesk
