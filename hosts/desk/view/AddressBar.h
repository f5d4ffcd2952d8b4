#pragma once

#include <QWidget>

class QHBoxLayout;
class QLineEdit;
class QMenu;
class QPushButton;
class QStringListModel;

namespace NoxDesk {

class ReasonLabel;

/** The field for a page's address, and what is wrong with it. */
class AddressBar : public QWidget
{
    Q_OBJECT

public:
    explicit AddressBar(QWidget *parent = nullptr);

    void setAddress(const QString &address);
    void setRecentAddresses(const QStringList &addresses); ///< Sets what completes the field.
    void addMenu(QMenu *menu);                             ///< Puts the button of the window's menu beside the field.
    void focusField();

    /** Whether the user is in the field, and has typed nothing since asking for a page. */
    bool isDone() const;

public Q_SLOTS:
    void showProblem(const QString &words);

Q_SIGNALS:
    /** The user wants this page read. */
    void readRequested(const QString &address);

    void addressChanged(const QString &address);

private:
    void setUpField();
    void request();

    QLineEdit *m_field;
    QPushButton *m_readButton;
    ReasonLabel *m_problem;
    QStringListModel *m_recent;
    QHBoxLayout *m_row = nullptr;
    bool m_isEdited = false;
};

} // namespace NoxDesk
