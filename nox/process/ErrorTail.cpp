#include <nox/process/ErrorTail.h>

#include <nox/process/ProcessOutput.h>

namespace Nox {

namespace {

constexpr int textLimit = 4096; // bytes of UTF-8
// More than the text needs: an encoding may read a character wrongly that has lost its first bytes.
constexpr int outputLimit = 2 * textLimit;

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// The last bytes of a text, from the beginning of a character.
QString tail(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (bytes.size() <= textLimit)
        return text;
    QByteArray rest = bytes.right(textLimit);
    int begin = 0;
    while (begin < rest.size() && isContinuation(rest.at(begin)))
        ++begin;
    return ProcessOutput::fromUtf8(rest.remove(0, begin));
}

} // namespace

QString ErrorTail::of(const QObject *worker)
{
    const auto *kept = dynamic_cast<const ErrorTail *>(worker);
    return kept != nullptr ? kept->text() : QString();
}

void ErrorTail::clearErrorTail()
{
    m_earlier.clear();
    m_output.clear();
}

void ErrorTail::appendToErrorTail(const QByteArray &output, Decoder decoder)
{
    if (decoder != m_decoder) {
        m_earlier = text();
        m_output.clear();
        m_decoder = decoder;
    }
    m_output += output.right(outputLimit);
    if (m_output.size() > outputLimit)
        m_output = m_output.right(outputLimit);
}

QString ErrorTail::text() const
{
    return m_output.isEmpty() ? m_earlier : tail(m_earlier + m_decoder(m_output));
}

} // namespace Nox
