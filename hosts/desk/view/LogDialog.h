#pragma once

#include <QDialog>

namespace NoxDesk {

/** The end of the log file, to read and to copy from. */
class LogDialog : public QDialog
{
    Q_OBJECT

public:
    explicit LogDialog(const QString &file, QWidget *parent = nullptr);
};

} // namespace NoxDesk
