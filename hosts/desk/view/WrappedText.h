#pragma once

#include <QTextEdit>

namespace NoxDesk {

/**
 * Plain text of several lines that can be copied. It also wraps inside words, so that a text never widens the window. A
 * text that is longer than the allowed lines can be scrolled.
 */
class WrappedText : public QTextEdit
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text)

public:
    explicit WrappedText(int maximumLines, QWidget *parent = nullptr);

    QString text() const;
    void showText(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    const int m_maximumLines;
};

} // namespace NoxDesk
