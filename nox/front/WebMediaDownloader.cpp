#include <nox/front/WebMediaDownloader.h>

#include <nox/process/ErrorTail.h>

namespace Nox {

QString WebMediaDownloader::errorDetail() const
{
    return ErrorTail::textOf(this);
}

} // namespace Nox
