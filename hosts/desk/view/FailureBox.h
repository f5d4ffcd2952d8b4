#pragma once

#include <QWidget>

class QPushButton;

namespace NoxDesk {

class WrappedText;

/** What went wrong, in words, with what the external programs said and a way to the log. */
class FailureBox : public QWidget
{
    Q_OBJECT

public:
    explicit FailureBox(QWidget *parent = nullptr);

    void setTexts(const QString &words, const QString &toolWords);

    /** What the keyboard goes to, in the order in which it is read. */
    QList<QWidget *> tabStops() const;

Q_SIGNALS:
    void logRequested();

private:
    WrappedText *m_words;
    WrappedText *m_toolWords;
    QPushButton *m_logButton;
};

} // namespace NoxDesk
