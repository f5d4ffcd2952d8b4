#include "hosts/desk/view/StreamPanel.h"

#include "hosts/desk/model/StreamTableModel.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTableView>

namespace NoxDesk {

StreamPanel::StreamPanel(StreamTableModel &model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_table(new QTableView)
    , m_label(new QLabel)
    , m_allBox(new QCheckBox(tr("Show a&ll")))
    , m_copyAction(new QAction(tr("Copy address of the stream"), m_table))
{
    m_sorted.setSourceModel(&m_model);
    m_sorted.setSortRole(StreamTableModel::SortRole);
    setUpTable();
    setUpHeader();
    addActions();
    m_allBox->setObjectName(QStringLiteral("showAll"));
    m_allBox->setToolTip(tr("Shows streams that differ little from others, too"));
    m_allBox->setAccessibleDescription(m_allBox->toolTip());
    m_label->setObjectName(QStringLiteral("streamsLabel"));
    m_label->setBuddy(m_table);

    auto *head = new QHBoxLayout;
    head->addWidget(m_label, 1, Qt::AlignLeft); // right in a right-to-left layout
    head->addWidget(m_allBox);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(head);
    layout->addWidget(m_table, 1);
    setTabOrder(m_allBox, m_table);

    connect(m_allBox, &QCheckBox::toggled, this, &StreamPanel::showAll);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        m_copyAction->setEnabled(!m_table->currentIndex().data(StreamTableModel::AddressRole).toString().isEmpty());
        Q_EMIT chosen(chosenRow());
    });
    connect(m_table, &QTableView::doubleClicked, this, &StreamPanel::downloadRequested);
    connect(&m_model, &QAbstractItemModel::modelReset, this, [this] { select({}); });
    select({});
}

void StreamPanel::setUpTable()
{
    m_table->setObjectName(QStringLiteral("streams"));
    m_table->setAccessibleName(tr("Streams of the page"));
    m_table->setModel(&m_sorted);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setTabKeyNavigation(false);
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 3);
    m_table->installEventFilter(this);
    // The minimum: all other widgets get their space before the table gets more than three rows.
    m_table->setMinimumHeight(m_table->horizontalHeader()->sizeHint().height()
                              + 3 * m_table->verticalHeader()->defaultSectionSize() + 2 * m_table->frameWidth());
    m_table->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
}

void StreamPanel::setUpHeader()
{
    QHeaderView *header = m_table->horizontalHeader();
    header->setHighlightSections(false);
    header->setResizeContentsPrecision(100);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(StreamTableModel::Description, QHeaderView::Stretch);
    header->setMinimumSectionSize(fontMetrics().averageCharWidth() * 8);
    // No sorting at first: the model has the best stream first. Newer Qt versions would even reverse this order.
    header->setSortIndicator(-1, Qt::AscendingOrder);
    m_table->setSortingEnabled(true);
    connect(header, &QHeaderView::sortIndicatorChanged, this, [this] { m_table->scrollTo(m_table->currentIndex()); });
}

void StreamPanel::addActions()
{
    auto *download = new QAction(tr("Download"), m_table);
    connect(download, &QAction::triggered, this, &StreamPanel::downloadRequested);
    m_copyAction->setObjectName(QStringLiteral("copyStreamAddress"));
    connect(m_copyAction, &QAction::triggered, this, [this] {
        const QModelIndex stream = m_table->currentIndex();
        QGuiApplication::clipboard()->setText(stream.data(StreamTableModel::AddressRole).toString());
    });
    m_table->addActions({download, m_copyAction});
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
}

bool StreamPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_table && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            if (!key->isAutoRepeat() && m_table->currentIndex().isValid())
                Q_EMIT downloadRequested();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void StreamPanel::focusTable()
{
    m_table->setFocus(Qt::OtherFocusReason);
}

void StreamPanel::setOutdated(bool isOutdated)
{
    m_label->setText(isOutdated ? tr("S&treams of the page before:") : tr("S&treams:"));
}

int StreamPanel::chosenRow() const
{
    return m_sorted.mapToSource(m_table->currentIndex()).row();
}

void StreamPanel::showAll(bool all)
{
    const QString code = m_model.stream(chosenRow()).getName();
    m_model.setShowsAll(all);
    select(code);
}

void StreamPanel::select(const QString &preferred)
{
    m_allBox->setEnabled(m_model.hidesAny());
    const QModelIndex start = m_sorted.mapFromSource(m_model.index(m_model.startRow(preferred), 0));
    if (start.isValid()) {
        m_table->setCurrentIndex(start);
        m_table->scrollTo(start);
    }
}

} // namespace NoxDesk
