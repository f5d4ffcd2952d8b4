#pragma once

#include <QLabel>
#include <QWidget>

class QPushButton;

namespace NoxDesk {

/** What went wrong, in words, with what the external programs said and a way to the log. */
class FailureBox : public QWidget
{
    Q_OBJECT

public:
    explicit FailureBox(QWidget *parent = nullptr);

    void setTexts(const QString &words, const QString &toolWords);

Q_SIGNALS:
    void logRequested();

private:
    static QLabel *newTextLabel();

    QLabel *m_words;
    QLabel *m_toolWords;
    QPushButton *m_logButton;
};

} // namespace NoxDesk
