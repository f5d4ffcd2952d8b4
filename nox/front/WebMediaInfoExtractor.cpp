#include <nox/front/WebMediaInfoExtractor.h>

#include <nox/process/ErrorTail.h>

namespace Nox {

QString WebMediaInfoExtractor::errorDetail() const
{
    return ErrorTail::textOf(this);
}

} // namespace Nox
