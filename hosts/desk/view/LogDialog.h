#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace NoxDesk {

/** The end of the log file, to read and to copy from. */
class LogDialog : public QDialog
{
    Q_OBJECT

public:
    explicit LogDialog(const QString &file, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QPlainTextEdit *m_text;
};

} // namespace NoxDesk
