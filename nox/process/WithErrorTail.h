#pragma once

#include <nox/process/ErrorTail.h>

namespace Nox {

/**
 * The abstract @p Worker with an error tail. A worker derives from this class and not from ErrorTail
 * directly, since qt_metacast() would otherwise answer for that name as well.
 */
template <typename Worker>
class WithErrorTail : public Worker, public ErrorTail
{
};

} // namespace Nox
