#pragma once

#include "hosts/desk/view/AddressOffer.h"

#include <QWidget>

class QLineEdit;
class QPushButton;

namespace NoxDesk {

class ReasonLabel;

/** The field for a page's address, what is wrong with it, and the offer of the clipboard's. */
class AddressBar : public QWidget
{
    Q_OBJECT

public:
    /** @param offer must outlive the bar */
    explicit AddressBar(AddressOffer &offer, QWidget *parent = nullptr);

    void setAddress(const QString &address);
    void focusField();

public Q_SLOTS:
    void showProblem(const QString &words);

Q_SIGNALS:
    /** The user wants this page read. */
    void readRequested(const QString &address);

private:
    QWidget *makeField();
    void showOffer(const QString &address);
    void request();

    AddressOffer &m_offer;
    QLineEdit *m_field;
    QPushButton *m_readButton;
    ReasonLabel *m_problem;
    QPushButton *m_offerButton;
};

} // namespace NoxDesk
