#include "hosts/desk/view/AddressBar.h"

#include "hosts/desk/view/ReasonLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace NoxDesk {

namespace {

constexpr int maximumOfferCharacters = 60;

} // namespace

AddressBar::AddressBar(AddressOffer &offer, QWidget *parent)
    : QWidget(parent)
    , m_offer(offer)
    , m_field(new QLineEdit)
    , m_readButton(new QPushButton(tr("&Read page")))
    , m_problem(new ReasonLabel)
    , m_offerButton(new QPushButton)
{
    m_problem->setObjectName(QStringLiteral("addressProblem"));
    m_offerButton->setObjectName(QStringLiteral("clipboardOffer"));
    m_offerButton->hide();

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(makeField());
    layout->addWidget(m_problem);
    layout->addWidget(m_offerButton, 0, Qt::AlignLeft);

    connect(m_field, &QLineEdit::textEdited, this, [this] { m_problem->explain({}, *m_field); });
    connect(m_field, &QLineEdit::textChanged, &m_offer, &AddressOffer::setKnown);
    connect(m_field, &QLineEdit::returnPressed, this, &AddressBar::request);
    connect(m_readButton, &QPushButton::clicked, this, &AddressBar::request);
    connect(&m_offer, &AddressOffer::changed, this, &AddressBar::showOffer);
    connect(m_offerButton, &QPushButton::clicked, this, [this] {
        setAddress(m_offer.address());
        focusField();
        request();
    });
    showOffer(m_offer.address());
}

QWidget *AddressBar::makeField()
{
    m_field->setObjectName(QStringLiteral("address"));
    m_field->setAccessibleName(tr("Address of the page"));
    m_field->setPlaceholderText(tr("https://… of a page with a video or a sound recording"));
    m_field->setClearButtonEnabled(true);
    m_field->setAcceptDrops(false); // the window takes them, and reads the page at once
    m_field->setInputMethodHints(Qt::ImhUrlCharactersOnly);
    m_readButton->setObjectName(QStringLiteral("read"));

    auto *label = new QLabel(tr("&Address:"));
    label->setBuddy(m_field);
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(label);
    layout->addWidget(m_field, 1);
    layout->addWidget(m_readButton);
    return row;
}

void AddressBar::setAddress(const QString &address)
{
    m_field->setText(address);
    m_problem->explain({}, *m_field);
}

void AddressBar::focusField()
{
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

void AddressBar::showProblem(const QString &words)
{
    m_problem->explain(words, *m_field);
    focusField();
}

void AddressBar::showOffer(const QString &address)
{
    const QString shown =
        address.size() > maximumOfferCharacters ? address.left(maximumOfferCharacters) + QStringLiteral("…") : address;
    // An ampersand would otherwise underline the letter behind it.
    m_offerButton->setText(tr("&Use the address on the clipboard: %1")
                               .arg(QString(shown).replace(QLatin1Char('&'), QStringLiteral("&&"))));
    m_offerButton->setVisible(!address.isEmpty());
}

void AddressBar::request()
{
    m_problem->explain({}, *m_field);
    Q_EMIT readRequested(m_field->text());
}

} // namespace NoxDesk
