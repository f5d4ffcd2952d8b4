#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

namespace Nox {

/**
 * The end of what a worker's programs have printed on standard error.
 *
 * The text is kept as a dynamic property of the worker: the abstract worker, which has no members, reads it there.
 */
class ErrorTail
{
public:
    /** How the bytes of a program become text. */
    using Decoder = QString (*)(const QByteArray &);

    /** The text that is kept for @p worker; empty for a worker without an error tail. */
    static QString textOf(const QObject *worker);

    /** For @p worker, which is not owned and must outlive this object. */
    explicit ErrorTail(QObject *worker);

    void clear();

    /** Adds what a program has printed. A character may begin in one call and end in the next. */
    void append(const QByteArray &output, Decoder decoder);

    /** Reads what @p process has printed on standard error, adds it and returns it as text. */
    QString read(QProcess *process, Decoder decoder);

private:
    QString text() const;

    QObject *m_worker;
    QString m_earlier; // of a program whose bytes were decoded in another way
    QByteArray m_output;
    Decoder m_decoder = nullptr;
};

} // namespace Nox
