#pragma once

namespace NoxDesk {

/** How far the downloads are, shown at the program's entry in the taskbar by desktops that offer it. */
class TaskbarProgress
{
public:
    /** @param percent 0 to 100; -1 when there is nothing to show */
    void show(int percent);

private:
    int m_shown = -1;
};

} // namespace NoxDesk
