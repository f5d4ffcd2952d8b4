#pragma once

#include <QObject>
#include <QUrl>

namespace NoxDesk {

/** Opens one file or page with the user's program for it, or shows a file in its folder. Deletes itself afterwards. */
class Opener : public QObject
{
    Q_OBJECT

public:
    explicit Opener(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    void open(const QUrl &url);

    /** Opens the folder of @p file, with the file selected where the file manager can do it. */
    void showInFolder(const QString &file);

Q_SIGNALS:
    /** No program took it. @param name file or address that was to be opened */
    void failed(const QString &name);
};

} // namespace NoxDesk
