#pragma once

#include <QClipboard>
#include <QMimeData>
#include <QObject>

namespace NoxDesk {

/** An address on the clipboard, offered as long as it is news. */
class AddressOffer : public QObject
{
    Q_OBJECT

public:
    explicit AddressOffer(QClipboard &clipboard, QObject *parent = nullptr);

    QString address() const { return m_address; } ///< The offered address; empty when there is none.

    /** Looks at the clipboard again; systems may show it to the active window only. */
    void check();

    /** No offer of an address that the user has already. */
    void setKnown(const QString &address);

    void setEnabled(bool isEnabled); ///< Whether addresses are offered at all.

    /** No offer of this address any more. */
    void dismiss();

    /** The address that dropped or copied data holds; empty when it holds none that can be read. */
    static QString addressIn(const QMimeData *data);

Q_SIGNALS:
    void changed(const QString &address);

private:
    QClipboard &m_clipboard;
    QString m_address;
    QString m_known;
    bool m_isEnabled = true;
    QString m_dismissed;
};

} // namespace NoxDesk
