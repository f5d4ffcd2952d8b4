#include "hosts/desk/view/AddressBar.h"

#include "hosts/desk/view/ReasonLabel.h"

#include <QCompleter>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStringListModel>
#include <QToolButton>

namespace NoxDesk {

AddressBar::AddressBar(QWidget *parent)
    : QWidget(parent)
    , m_field(new QLineEdit)
    , m_readButton(new QPushButton(tr("&Read page")))
    , m_error(new ReasonLabel)
    , m_recent(new QStringListModel(this))
{
    m_error->setObjectName(QStringLiteral("addressError"));
    m_readButton->setObjectName(QStringLiteral("read"));
    setUpField();
    auto *label = new QLabel(tr("&Address:"));
    label->setBuddy(m_field);
    m_row = new QHBoxLayout;
    m_row->addWidget(label);
    m_row->addWidget(m_field, 1);
    m_row->addWidget(m_readButton);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(m_row);
    layout->addWidget(m_error);

    connect(m_field, &QLineEdit::textEdited, this, [this] {
        m_isEdited = true;
        m_error->explain({}, *m_field);
    });
    connect(m_field, &QLineEdit::textChanged, this, &AddressBar::addressChanged);
    connect(m_field, &QLineEdit::returnPressed, this, &AddressBar::request);
    connect(m_readButton, &QPushButton::clicked, this, &AddressBar::request);
}

void AddressBar::setUpField()
{
    m_field->setObjectName(QStringLiteral("address"));
    m_field->setAccessibleName(tr("Address of the page"));
    m_field->setPlaceholderText(tr("https://… of a page with a video or a sound recording"));
    m_field->setClearButtonEnabled(true);
    m_field->setAcceptDrops(false); // the window handles drops, and reads the page at once
    m_field->setInputMethodHints(Qt::ImhUrlCharactersOnly);
    auto *completer = new QCompleter(m_recent, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    m_field->setCompleter(completer);
}

void AddressBar::setAddress(const QString &address)
{
    m_field->setText(address);
    m_field->setCursorPosition(0);
    m_isEdited = false;
    m_error->explain({}, *m_field);
}

void AddressBar::setRecentAddresses(const QStringList &addresses)
{
    m_recent->setStringList(addresses);
}

void AddressBar::addMenu(QMenu *menu)
{
    auto *button = new QToolButton;
    button->setObjectName(QStringLiteral("menu"));
    button->setText(QStringLiteral("☰"));
    button->setAccessibleName(tr("Menu"));
    button->setToolTip(tr("Menu (F10)"));
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::StrongFocus);
    new QShortcut(Qt::Key_F10, window(), button, &QToolButton::showMenu);
    m_row->addWidget(button);
    setTabOrder(m_readButton, button); // created last, so it would be last in the tab order
}

void AddressBar::focusField()
{
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

bool AddressBar::isDone() const
{
    return window()->focusWidget() == m_field && !m_isEdited;
}

void AddressBar::showError(const QString &message)
{
    m_error->explain(message, *m_field);
    focusField();
}

void AddressBar::request()
{
    m_error->explain({}, *m_field);
    m_isEdited = false;
    if (m_field->hasFocus())
        m_field->selectAll(); // so that typing replaces the address
    Q_EMIT readRequested(m_field->text());
}

} // namespace NoxDesk
