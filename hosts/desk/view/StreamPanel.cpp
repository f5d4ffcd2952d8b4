#include "hosts/desk/view/StreamPanel.h"

#include "hosts/desk/model/StreamTableModel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>

namespace NoxDesk {

StreamPanel::StreamPanel(StreamTableModel &model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_table(new QTableView)
    , m_allBox(new QCheckBox(tr("Show a&ll")))
{
    setUpTable();
    m_allBox->setObjectName(QStringLiteral("showAll"));
    m_allBox->setToolTip(tr("Shows streams that differ little from others, too"));
    m_allBox->setAccessibleDescription(m_allBox->toolTip());
    auto *label = new QLabel(tr("S&treams:"));
    label->setBuddy(m_table);

    auto *head = new QHBoxLayout;
    head->addWidget(label, 1);
    head->addWidget(m_allBox);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(head);
    layout->addWidget(m_table, 1);

    connect(m_allBox, &QCheckBox::toggled, this, &StreamPanel::showAll);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) { Q_EMIT chosen(current.row()); });
    connect(&m_model, &QAbstractItemModel::modelReset, this, [this] { select({}); });
    select({});
}

void StreamPanel::setUpTable()
{
    m_table->setObjectName(QStringLiteral("streams"));
    m_table->setAccessibleName(tr("Streams of the page"));
    m_table->setModel(&m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setTabKeyNavigation(false);
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    // A header and two streams, for screens with little room.
    m_table->setMinimumHeight(m_table->horizontalHeader()->sizeHint().height() + 3 * fontMetrics().lineSpacing());
}

void StreamPanel::focusTable()
{
    m_table->setFocus(Qt::OtherFocusReason);
}

void StreamPanel::showAll(bool all)
{
    const QString code = m_model.stream(m_table->currentIndex().row()).getName();
    m_model.setShowsAll(all);
    select(code);
}

void StreamPanel::select(const QString &preferred)
{
    m_allBox->setEnabled(m_model.hidesAny());
    const int row = m_model.startRow(preferred);
    if (row >= 0) {
        m_table->setCurrentIndex(m_model.index(row, 0));
        m_table->scrollTo(m_table->currentIndex());
    }
}

} // namespace NoxDesk
