#pragma once

#include <QWidget>

class QCheckBox;
class QTableView;

namespace NoxDesk {

class StreamTableModel;

/** The table of streams, one of which is chosen. */
class StreamPanel : public QWidget
{
    Q_OBJECT

public:
    /** @param model must outlive the panel */
    explicit StreamPanel(StreamTableModel &model, QWidget *parent = nullptr);

    void focusTable();

Q_SIGNALS:
    /** Another stream is chosen. @param row its row, or -1 when there is none */
    void chosen(int row);

private:
    void setUpTable();
    void showAll(bool all);
    void select(const QString &preferred);

    StreamTableModel &m_model;
    QTableView *m_table;
    QCheckBox *m_allBox;
};

} // namespace NoxDesk
