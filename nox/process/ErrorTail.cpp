#include <nox/process/ErrorTail.h>

#include <nox/process/ProcessOutput.h>

#include <QVariant>

namespace Nox {

namespace {

constexpr char propertyName[] = "_nox_errorDetail";
constexpr int textLimit = 4096; // bytes of UTF-8
// Twice the limit, because cutting may split a multi-byte character.
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

QString ErrorTail::textOf(const QObject *worker)
{
    return worker->property(propertyName).toString();
}

ErrorTail::ErrorTail(QObject *worker)
    : m_worker(worker)
{
}

void ErrorTail::clear()
{
    m_earlier.clear();
    m_output.clear();
    m_worker->setProperty(propertyName, QVariant());
}

void ErrorTail::append(const QByteArray &output, Decoder decoder)
{
    if (decoder != m_decoder) {
        m_earlier = text();
        m_output.clear();
        m_decoder = decoder;
    }
    m_output += output.right(outputLimit);
    if (m_output.size() > outputLimit)
        m_output = m_output.right(outputLimit);
    m_worker->setProperty(propertyName, text());
}

QString ErrorTail::read(QProcess *process, Decoder decoder)
{
    QString result;
    ProcessOutput::read(process, QProcess::StandardError, [&] {
        const QByteArray output = process->readAllStandardError();
        append(output, decoder);
        result = decoder(output);
    });
    return result;
}

QString ErrorTail::text() const
{
    return m_output.isEmpty() ? m_earlier : tail(m_earlier + m_decoder(m_output));
}

} // namespace Nox
