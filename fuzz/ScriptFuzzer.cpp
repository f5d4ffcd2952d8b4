// Files with a byte-order mark.

#include "fuzz/Check.h"

#include <nox/parse/JsonHelper.h>

#include <QByteArray>

#include <sys/mman.h>
#include <unistd.h>

namespace {

using Nox::JsonHelper;

// A file in memory, with a path by which it can be opened.
class MemoryFile
{
public:
    MemoryFile()
        : m_descriptor(::memfd_create("script", 0))
        , m_path(QStringLiteral("/proc/self/fd/%1").arg(m_descriptor))
    {
        Check::that(m_descriptor >= 0, "a file in memory");
    }

    const QString &path() const { return m_path; }

    void fill(const std::uint8_t *data, size_t size) const
    {
        const bool isFilled =
            ::ftruncate(m_descriptor, 0) == 0 && ::pwrite(m_descriptor, data, size, 0) == static_cast<ssize_t>(size);
        Check::that(isFilled, "the file is written");
    }

private:
    int m_descriptor;
    QString m_path;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size)
{
    static const MemoryFile file;
    file.fill(data, size);
    const QString text = JsonHelper::readUtf8Script(file.path());

    QByteArray content(reinterpret_cast<const char *>(data), static_cast<QByteArray::size_type>(size));
    if (size < 4) {
        Check::that(text.isNull(), "a file of less than four bytes reads as nothing");
        return 0;
    }
    // The file ends at its first zero byte; Qt skips one mark itself, and only the first is one.
    Check::that(text == QString::fromUtf8(content.constData()), "the text is what stands behind the mark");

    Check::that(JsonHelper::writeUtf8Script(file.path(), text), "the file can be written");
    Check::that(text.isEmpty() || JsonHelper::readUtf8Script(file.path()) == text, "what is written is read back");
    return 0;
}
