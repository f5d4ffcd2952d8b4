#include "tests/desk/DeskUser.h"

#include "hosts/desk/view/DownloadRow.h"
#include "tests/jobs/HostSandbox.h"
#include "tests/util/Rows.h"

using namespace NoxDesk;

DeskUser::DeskUser()
    : m_window(m_controller)
{
    m_window.show();
    if (!QTest::qWaitForWindowActive(&m_window))
        qWarning("the window is not active");
}

QWidget *DeskUser::row(int row)
{
    const auto *list = m_window.findChild<QScrollArea *>("downloads"_s)->widget()->layout();
    QLayoutItem *item = row < 0 ? nullptr : list->itemAt(row);
    return item == nullptr ? nullptr : qobject_cast<DownloadRow *>(item->widget());
}

QWidget *DeskUser::find(const char *name, int row)
{
    QWidget *scope = row < 0 ? &m_window : this->row(row);
    if (scope == nullptr)
        return nullptr;
    const QList<QWidget *> found = scope->findChildren<QWidget *>(QString::fromLatin1(name));
    for (QWidget *widget : found) {
        if (widget->isVisible())
            return widget;
    }
    return nullptr;
}

QString DeskUser::text(const char *name, int row)
{
    const QWidget *widget = find(name, row);
    return widget == nullptr ? QString() : widget->property("text").toString();
}

QAction *DeskUser::action(const char *name, int row)
{
    const QWidget *scope = this->row(row);
    return scope == nullptr ? nullptr : scope->findChild<QAction *>(QString::fromLatin1(name));
}

bool DeskUser::canPress(const char *name, int row)
{
    if (const QAction *entry = action(name, row))
        return entry->isEnabled();
    const QWidget *widget = find(name, row);
    return widget != nullptr && widget->isEnabled();
}

bool DeskUser::press(const char *name, int row)
{
    if (!canPress(name, row))
        return false;
    if (QAction *entry = action(name, row))
        entry->trigger();
    else
        QTest::mouseClick(find(name, row), Qt::LeftButton);
    return true;
}

bool DeskUser::seesFailure(int row)
{
    if (sees("retry", row) && !sees("detailsText", row))
        press("details", row);
    return sees("failureMessage", row);
}

void DeskUser::type(const char *name, const QString &text)
{
    auto *field = find<QLineEdit>(name);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
}

void DeskUser::readPage(const QString &address)
{
    type("address", address);
    QTest::keyClick(find("address"), Qt::Key_Return);
}

bool DeskUser::seesPage()
{
    readPage();
    return QTest::qWaitFor([this] { return sees("streams"); }, HostSandbox::Timeout);
}

bool DeskUser::beginDownload(const QString &quality)
{
    if (m_controller.reader().state() != PageReader::State::Ready && !seesPage())
        return false;
    choose(quality);
    return press("download");
}

void DeskUser::choose(const QString &quality)
{
    auto *table = find<QTableView>("streams");
    const QAbstractItemModel *model = table->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex cell = model->index(row, StreamTableModel::Quality);
        if (cell.data().toString() == quality)
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(cell).center());
    }
}

QDialog *DeskUser::openPreferences()
{
    find<QToolButton>("menu")->menu()->actions().first()->trigger();
    return qobject_cast<QDialog *>(find("preferredFolder")->window());
}

QString DeskUser::list()
{
    QStringList result;
    for (int row = 0; row < downloads().rowCount(); ++row) {
        const QModelIndex index = downloads().index(row);
        const auto state = index.data(Nox::DownloadQueue::StateRole).value<Nox::DownloadQueue::State>();
        result += "%1=%2"_s.arg(index.data().toString().remove(".mp4"_s), nameOf(state));
    }
    return result.join(QLatin1Char(' '));
}
