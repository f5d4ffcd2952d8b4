#pragma once

#include <QTextEdit>

namespace NoxDesk {

/**
 * Plain text of some lines, to read and to copy from. It wraps inside words, too, so that no text decides how wide the
 * window is; what is longer than the lines allowed can be scrolled to.
 */
class WrappedText : public QTextEdit
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text)

public:
    explicit WrappedText(int maximumLines, QWidget *parent = nullptr);

    QString text() const;
    void setWords(const QString &text);

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
