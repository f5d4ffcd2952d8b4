#pragma once

#include <QClipboard>
#include <QObject>
#include <QStringList>

namespace NoxDesk {

/** Offers the addresses on the clipboard, unless they were used or dismissed. */
class AddressOffer : public QObject
{
    Q_OBJECT

public:
    explicit AddressOffer(QClipboard &clipboard, QObject *parent = nullptr);

    QStringList addresses() const { return m_addresses; } ///< The offered addresses; may be empty.

    /** Reads the clipboard again. Some systems show it only to the active window. */
    void check();

    /** Excludes an address that the window shows already. */
    void setKnown(const QString &address);

    void setEnabled(bool isEnabled); ///< Whether addresses are offered.

    /** Removes the current offer. */
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
