#pragma once

namespace NoxFetch {

class Console;

/**
 * Keeps Qt's debug channel, on which the library writes traces, from the user unless he asks for it.
 * There is one at most; it must outlive all use of Qt.
 */
class MessageFilter
{
public:
    explicit MessageFilter(Console &console);
    ~MessageFilter();
    MessageFilter(const MessageFilter &) = delete;
    MessageFilter &operator=(const MessageFilter &) = delete;

    /** Whether everything is shown; else only what is fatal. */
    void setVerbose(bool verbose);
};

} // namespace NoxFetch
