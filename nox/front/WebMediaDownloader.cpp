#include <nox/front/WebMediaDownloader.h>

#include <nox/process/ErrorTail.h>

namespace Nox {

QString WebMediaDownloader::errorDetail() const
{
    return ErrorTail::of(this);
}

} // namespace Nox
