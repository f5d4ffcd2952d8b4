#pragma once

#include <QHash>
#include <QString>
#include <QStringView>

#include <array>
#include <vector>

namespace Nox {

/**
 * Numbers the container formats of a list in the order in which they first appear. The formats must
 * stay where they are meanwhile.
 */
class FormatNumbers
{
public:
    /** The number of @p format. */
    quint64 of(QStringView format)
    {
        // A list has few formats, and most of its profiles have one of the first.
        const quint64 code = codeOf(format);
        for (size_t i = 0; code != 0 && i < m_firstCodes.size(); ++i) {
            if (m_firstCodes[i] == code)
                return i;
        }
        return lookUp(format, code);
    }

    /** For each number the place of its format in the order of code units. */
    std::vector<quint64> places() const;

private:
    // The text itself as a number when it is short, else 0.
    static quint64 codeOf(QStringView format)
    {
        constexpr int unitBits = 16;
        if (format.size() > 4 || format.startsWith(QChar::Null))
            return 0;
        quint64 code = 0;
        for (const QChar unit : format)
            code = code << unitBits | unit.unicode();
        return code;
    }

    quint64 lookUp(QStringView format, quint64 code);

    std::array<quint64, 4> m_firstCodes{};
    std::vector<QStringView> m_formats;
    QHash<QString, quint64> m_numbers;
};

} // namespace Nox
