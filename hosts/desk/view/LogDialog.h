#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace NoxDesk {

/** Shows the end of the log file, as text that can be copied. */
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
