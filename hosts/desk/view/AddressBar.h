#pragma once

#include <QWidget>

class QHBoxLayout;
class QLineEdit;
class QMenu;
class QPushButton;
class QStringListModel;

namespace NoxDesk {

class ReasonLabel;

/** The field for the address of a page, and its error message. */
class AddressBar : public QWidget
{
    Q_OBJECT

public:
    explicit AddressBar(QWidget *parent = nullptr);

    void setAddress(const QString &address);
    void setRecentAddresses(const QStringList &addresses); ///< Addresses for the completer.
    void addMenu(QMenu *menu);                             ///< Adds the button of the window's menu.
    void focusField();

    /** Whether the field has the focus, and nothing was typed since the last request. */
    bool isDone() const;

public Q_SLOTS:
    void showError(const QString &message);

Q_SIGNALS:
    /** The user asked to read this page. */
    void readRequested(const QString &address);

    void addressChanged(const QString &address);

private:
    void setUpField();
    void request();

    QLineEdit *m_field;
    QPushButton *m_readButton;
    ReasonLabel *m_error;
    QStringListModel *m_recent;
    QHBoxLayout *m_row = nullptr;
    bool m_isEdited = false;
};

} // namespace NoxDesk
