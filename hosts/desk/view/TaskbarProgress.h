#pragma once

namespace NoxDesk {

/** Shows the progress of the downloads in the taskbar, on desktops that support it. */
class TaskbarProgress
{
public:
    /** @param percent 0 to 100; -1 hides the progress */
    void show(int percent);

private:
    int m_shown = -1;
};

} // namespace NoxDesk
