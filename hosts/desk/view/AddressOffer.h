#pragma once

#include <QClipboard>
#include <QObject>
#include <QStringList>

namespace NoxDesk {

/** The addresses on the clipboard, offered as long as they are news. */
class AddressOffer : public QObject
{
    Q_OBJECT

public:
    explicit AddressOffer(QClipboard &clipboard, QObject *parent = nullptr);

    QStringList addresses() const { return m_addresses; } ///< Those offered; empty when there is none.

    /** Looks at the clipboard again; systems may show it to the active window only. */
    void check();

    /** No offer of an address that the user has already. */
    void setKnown(const QString &address);

    void setEnabled(bool isEnabled); ///< Whether addresses are offered at all.

    /** No offer of these addresses any more. */
    void dismiss();

Q_SIGNALS:
    void changed(const QStringList &addresses);

private:
    QClipboard &m_clipboard;
    QStringList m_addresses;
    QString m_known;
    bool m_isEnabled = true;
    QStringList m_dismissed;
};

} // namespace NoxDesk
