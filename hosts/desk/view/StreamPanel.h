#pragma once

#include <QSortFilterProxyModel>
#include <QWidget>

class QAction;
class QCheckBox;
class QLabel;
class QTableView;

namespace NoxDesk {

class StreamTableModel;

/** The table of streams with the chosen one. */
class StreamPanel : public QWidget
{
    Q_OBJECT

public:
    /** @param model must outlive the panel */
    explicit StreamPanel(StreamTableModel &model, QWidget *parent = nullptr);

    void focusTable();
    void setOutdated(bool isOutdated); ///< Whether the streams are those of the page before.

Q_SIGNALS:
    /** Another stream was chosen. @param row its row in the model, or -1 for none */
    void chosen(int row);

    /** The user asked to download the chosen stream. */
    void downloadRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpTable();
    void setUpHeader();
    void addActions();
    int chosenRow() const;
    void showAll(bool all);
    void select(const QString &preferred);

    StreamTableModel &m_model;
    QSortFilterProxyModel m_sorted;
    QTableView *m_table;
    QLabel *m_label;
    QCheckBox *m_allBox;
    QAction *m_copyAction;
};

} // namespace NoxDesk
