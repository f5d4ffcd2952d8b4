#include <nox/jobs/ToolSettings.h>

#include <QDir>
#include <QFileInfo>
#include <QList>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>

namespace Nox {

namespace {

constexpr qint64 maximumFileBytes = 64LL * 1024; // the limit of the tool's front

/** A word of the text: its place, and its value without quotes. */
struct Piece {
    int start;
    int end;
    QByteArray value;
};

/** The words of the text by the rules of a shell: with quotes and comments. */
QList<Piece> words(const QByteArray &text)
{
    QList<Piece> result;
    Piece word{-1, 0, {}};
    char quote = 0;
    for (int i = 0; i <= text.size(); ++i) {
        const char character = i < text.size() ? text.at(i) : '\n';
        const bool isEnd = quote == 0 ? QByteArray(" \t\r\n#").contains(character) : character == '\n';
        if (isEnd && word.start >= 0) {
            word.end = i;
            result += word;
            word = {-1, 0, {}};
        }
        if (isEnd) {
            quote = 0;
            if (character == '#')
                i = static_cast<int>(text.indexOf('\n', i) < 0 ? text.size() : text.indexOf('\n', i));
            continue;
        }
        word.start = word.start < 0 ? i : word.start;
        if (character == quote) {
            quote = 0;
        } else if (quote == 0 && (character == '"' || character == '\'')) {
            quote = character;
        } else {
            const bool isEscaped = character == '\\' && quote != '\'' && i + 1 < text.size() && text.at(i + 1) != '\n';
            word.value += isEscaped ? text.at(++i) : character;
        }
    }
    return result;
}

/** The places of the option and its value, for each time that it is set. */
QList<Piece> places(const QByteArray &text, const ToolSettings::Option &option)
{
    const QByteArray name(option.name);
    const QByteArray assigned = name + '=';
    const QByteArray shortName(option.shortName);
    QList<Piece> result;
    const QList<Piece> all = words(text);
    for (int i = 0; i < all.size(); ++i) {
        const Piece &word = all.at(i);
        if (text.at(word.start) != '-') // a quoted value may begin with a dash
            continue;
        if (word.value == name || (word.value == shortName && !shortName.isEmpty())) {
            const Piece &value = all.value(i + 1, {word.start, word.end, {}});
            result += Piece{word.start, value.end, value.value};
            ++i;
        } else if (word.value.startsWith(assigned)) {
            result += Piece{word.start, word.end, word.value.mid(assigned.size())};
        } else if (!shortName.isEmpty() && word.value.startsWith(shortName)) {
            const int size = static_cast<int>(shortName.size());
            result += Piece{word.start, word.end, word.value.mid(word.value.at(size) == '=' ? size + 1 : size)};
        }
    }
    return result;
}

QByteArray shellQuoted(const QString &value)
{
    static const QRegularExpression plain(QStringLiteral("^[\\w@%+=:,./-]+$"));
    QString text = value;
    if (!plain.match(text).hasMatch())
        text = QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
    return text.toUtf8();
}

/** Removes the piece, and its line if nothing else is in it. */
void removePiece(QByteArray &text, const Piece &piece)
{
    const int start = static_cast<int>(text.left(piece.start).lastIndexOf('\n')) + 1;
    const auto newline = static_cast<int>(text.indexOf('\n', piece.end));
    const int end = newline < 0 ? static_cast<int>(text.size()) : newline + 1;
    const QByteArray rest = text.mid(start, piece.start - start) + text.mid(piece.end, end - piece.end);
    text.replace(start, end - start, rest.trimmed().isEmpty() ? QByteArray() : rest);
}

} // namespace

ToolSettings::ToolSettings()
{
    QFile file(fileName());
    if (QFileInfo::exists(fileName())) {
        m_isReadable = QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly) && file.size() <= maximumFileBytes;
        m_text = m_isReadable ? file.read(maximumFileBytes) : QByteArray();
    }
    m_savedText = m_text;
}

QString ToolSettings::fileName()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(QStringLiteral("noxwebmedia/tool.conf"));
}

QString ToolSettings::value(const Option &option) const
{
    const QList<Piece> found = places(m_text, option);
    return found.isEmpty() ? QString() : QString::fromUtf8(found.last().value); // the tool uses the last one
}

void ToolSettings::setValue(const Option &option, const QString &value)
{
    if (value == this->value(option))
        return;
    const QList<Piece> found = places(m_text, option);
    const QByteArray text = QByteArray(option.name) + ' ' + shellQuoted(value);
    if (value.isEmpty()) {
        for (auto piece = found.crbegin(); piece != found.crend(); ++piece)
            removePiece(m_text, *piece);
    } else if (!found.isEmpty()) {
        m_text.replace(found.last().start, found.last().end - found.last().start, text);
    } else {
        if (!m_text.isEmpty() && !m_text.endsWith('\n'))
            m_text += '\n';
        m_text += text + '\n';
    }
}

bool ToolSettings::save()
{
    if (m_text == m_savedText)
        return true;
    QDir().mkpath(QFileInfo(fileName()).absolutePath());
    QSaveFile file(fileName());
    if (!m_isReadable || !file.open(QIODevice::WriteOnly))
        return false;
    // It may hold passwords, and the tool's front takes no file that others may write to. One that is there keeps its
    // permissions.
    if (!QFileInfo::exists(fileName()))
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    if (file.write(m_text) != m_text.size() || !file.commit())
        return false;
    m_savedText = m_text;
    return true;
}

} // namespace Nox
