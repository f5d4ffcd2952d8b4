#pragma once

#include <QWidget>

class QPushButton;

namespace NoxDesk {

class WrappedText;

/** The error message, what the external programs said about it, and a button that shows the log. */
class FailureBox : public QWidget
{
    Q_OBJECT

public:
    explicit FailureBox(QWidget *parent = nullptr);

    void setTexts(const QString &message, const QString &details);

    /** The widgets for the tab order. */
    QList<QWidget *> tabStops() const;

Q_SIGNALS:
    void logRequested();

private:
    WrappedText *m_message;
    WrappedText *m_details;
    QPushButton *m_logButton;
};

} // namespace NoxDesk
