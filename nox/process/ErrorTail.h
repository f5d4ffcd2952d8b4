#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

namespace Nox {

/**
 * The end of what a worker's programs have printed on standard error.
 *
 * A base class of the worker (see WithErrorTail) and no member, so that it can be found from the abstract
 * worker, which has neither members nor virtual functions for it.
 */
class ErrorTail
{
public:
    /** How the bytes of a program become text. */
    using Decoder = QString (*)(const QByteArray &);

    /** The text of @p worker; empty for one that keeps none. */
    static QString of(const QObject *worker);

protected:
    void clearErrorTail();

    /** Adds what a program has printed. A character may begin in one call and end in the next. */
    void appendToErrorTail(const QByteArray &output, Decoder decoder);

private:
    QString text() const;

    QString m_earlier; // of a program whose bytes were decoded in another way
    QByteArray m_output;
    Decoder m_decoder = nullptr;
};

} // namespace Nox
