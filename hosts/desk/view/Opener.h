#pragma once

#include <QObject>
#include <QUrl>

namespace NoxDesk {

/** Opens one file or page with the user's default program, or shows a file in its folder. Deletes itself afterwards. */
class Opener : public QObject
{
    Q_OBJECT

public:
    explicit Opener(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    void open(const QUrl &url);

    /** Opens the folder of @p file, and selects the file if the file manager supports that. */
    void showInFolder(const QString &file);

Q_SIGNALS:
    /** No program could open it. @param name the file or address */
    void failed(const QString &name);
};

} // namespace NoxDesk
