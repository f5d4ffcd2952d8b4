#pragma once

namespace NoxFetch {

class Console;

/**
 * Keeps Qt's debug channel, on which the library writes traces, from the user unless he asks for it.
 * There is one at most; it must outlive all use of Qt.
 */
class MessageHandler
{
public:
    explicit MessageHandler(Console &console);
    ~MessageHandler();
    MessageHandler(const MessageHandler &) = delete;
    MessageHandler &operator=(const MessageHandler &) = delete;

    /** Whether everything is shown; else only what is fatal. */
    void setVerbose(bool verbose);
};

} // namespace NoxFetch
