#pragma once

#include <QStringList>
#include <QWidget>

class QPushButton;

namespace NoxDesk {

class ElidedLabel;

/** A bar that offers the addresses on the clipboard, unless they were used or dismissed. */
class AddressOfferBar : public QWidget
{
    Q_OBJECT

public:
    explicit AddressOfferBar(QWidget *parent = nullptr);

    /** Reads the clipboard again. Some systems show it only to the active window. */
    void check();

    /** Excludes an address that the window shows already. */
    void setKnown(const QString &address);

    void setOffering(bool isOffering); ///< Whether addresses are offered.

Q_SIGNALS:
    void accepted(const QStringList &addresses);

private:
    void offer();
    void dismiss();

    ElidedLabel *m_address;
    QPushButton *m_useButton;
    QStringList m_addresses; // on the clipboard; offered if they are new
    QStringList m_dismissed;
    QString m_known;
    bool m_isOffering = true;
};

} // namespace NoxDesk
