#pragma once

#include <QObject>

namespace NoxDesk {

/** The desktop's file manager, asked once to show a folder with a file of it selected. Deletes itself when it has. */
class FileManager : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void select(const QString &file);

Q_SIGNALS:
    /** There is none that can do it. */
    void failed();
};

} // namespace NoxDesk
