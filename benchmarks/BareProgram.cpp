#include "benchmarks/BareProgram.h"

#include <array>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

pid_t start(const std::vector<std::string> &command, int output)
{
    std::vector<char *> arguments;
    for (const std::string &argument : command)
        arguments.push_back(const_cast<char *>(argument.c_str())); // NOLINT: the interface's type
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions{};
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    if (::posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), ::environ) != 0)
        child = -1;
    ::posix_spawn_file_actions_destroy(&actions);
    return child;
}

} // namespace

int BareProgram::run(const std::vector<std::string> &command, std::string &output)
{
    int ends[2] = {};
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return -1;
    const pid_t child = start(command, ends[1]);
    ::close(ends[1]);
    std::array<char, 65536> buffer{};
    for (ssize_t size = 0; (size = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
        output.append(buffer.data(), static_cast<size_t>(size));
    ::close(ends[0]);

    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}
