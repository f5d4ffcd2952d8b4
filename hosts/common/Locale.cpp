#include "hosts/common/Locale.h"

#include <QByteArray>
#include <QtGlobal>

#include <clocale>

#include <langinfo.h>

namespace NoxHost {

void ensureUtf8Locale()
{
    static_cast<void>(std::setlocale(LC_CTYPE, ""));
    if (qstrcmp(nl_langinfo(CODESET), "UTF-8") != 0) {
        qputenv("LC_ALL", "C.UTF-8");
        static_cast<void>(std::setlocale(LC_CTYPE, ""));
    }
}

} // namespace NoxHost
