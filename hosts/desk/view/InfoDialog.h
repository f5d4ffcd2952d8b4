#pragma once

#include <QDialog>

class QFormLayout;

namespace NoxDesk {

/** A dialog with rows of a name and a text. */
class InfoDialog : public QDialog
{
    Q_OBJECT

public:
    explicit InfoDialog(const QString &title, QWidget *parent = nullptr);

    void addRow(const QString &name, const QString &text);
    void addRow(const QString &name, QWidget *widget);

private:
    QFormLayout *m_rows;
};

} // namespace NoxDesk
