#include <nox/download/OwnFiles.h>

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <tuple>

namespace Nox {

namespace {

// File systems take their time stamps from a clock that proceeds in steps of some milliseconds.
#if defined(CLOCK_REALTIME_COARSE)
constexpr clockid_t fileClock = CLOCK_REALTIME_COARSE;
#else
constexpr clockid_t fileClock = CLOCK_REALTIME;
#endif

std::timespec timeOf(clockid_t clock)
{
    std::timespec time{};
    static_cast<void>(::clock_gettime(clock, &time)); // these clocks are always there
    return time;
}

// When a file came to be or, where the file system does not keep that, when it last changed; nothing when
// there is no file. The time of modification will not do: the tool sets it to what the server says.
std::optional<std::timespec> birthTime(const QString &file)
{
    const QByteArray path = QFile::encodeName(file);
#if defined(STATX_BTIME)
    struct statx info = {};
    if (::statx(AT_FDCWD, path.constData(), AT_SYMLINK_NOFOLLOW, STATX_BTIME | STATX_CTIME, &info) == 0) {
        const statx_timestamp &time = (info.stx_mask & STATX_BTIME) != 0 ? info.stx_btime : info.stx_ctime;
        return std::timespec{time.tv_sec, static_cast<long>(time.tv_nsec)};
    }
#endif
    struct stat status = {};
    if (::lstat(path.constData(), &status) != 0)
        return std::nullopt;
    return std::timespec{status.st_ctime, 0};
}

bool isLater(const std::timespec &time, const std::timespec &than)
{
    return std::tie(time.tv_sec, time.tv_nsec) > std::tie(than.tv_sec, than.tv_nsec);
}

} // namespace

OwnFiles::OwnFiles(const QString &folder)
    : m_folder(folder)
    , m_begin(timeOf(CLOCK_REALTIME))
{
    // With the next step of that clock, what is made now and what was made before can be told apart.
    constexpr std::timespec pause{0, 500'000};
    constexpr int maximumPauses = 40; // the longest step in use is 10 ms
    for (int i = 0; i < maximumPauses && !isLater(timeOf(fileClock), m_begin); ++i)
        ::nanosleep(&pause, nullptr);
}

bool OwnFiles::contain(const QString &file) const
{
    const std::optional<std::timespec> birth = birthTime(file);
    if (!birth || isInside(file))
        return true;
    // A time still to come is that of a clock that was wrong.
    return isLater(*birth, m_begin) && !isLater(*birth, timeOf(CLOCK_REALTIME));
}

// With all links on the way resolved, as the system does it when the file is renamed or removed.
bool OwnFiles::isInside(const QString &file) const
{
    const QFileInfo info(file);
    const QString name = info.fileName();
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return false; // another way to write a folder
    const QString home = QFileInfo(m_folder).canonicalFilePath();
    const QString place = QFileInfo(info.path()).canonicalFilePath();
    return !home.isEmpty()
        && (place == home || place.startsWith(home.endsWith(QLatin1Char('/')) ? home : home + QLatin1Char('/')));
}

} // namespace Nox
