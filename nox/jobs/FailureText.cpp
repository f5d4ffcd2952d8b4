#include <nox/jobs/FailureText.h>

#include <nox/front/DownloadError.h>

#include <QProcess>

namespace Nox {

QString FailureText::cause(Job::Error error)
{
    switch (error) {
    case Job::Cancelled:
        return tr("Cancelled.");
    case Job::Paused:
        return tr("Paused.");
    case Job::NoNetwork:
        return tr(
            "The server cannot be reached. Check the network connection, and try again later. If you need a proxy, "
            "set it in the file tool.conf.");
    case Job::NotFound:
        return tr("There is no such page, or its video has been removed. Check the address.");
    case Job::LoginNeeded:
        return tr(
            "The site requires a login. Name your browser's cookies or your user name in the file tool.conf, and try "
            "again.");
    case Job::NotAvailableInCountry:
        return tr(
            "The site does not offer this video in your country. A proxy in another country can be set in the file "
            "tool.conf.");
    case Job::Protected:
        return tr("The video is protected against copying (DRM). It cannot be downloaded.");
    case Job::NotBegun:
        return tr("The broadcast has not begun yet. Try again when it has.");
    case Job::NothingToDownload:
        return tr("The page has no video that can be downloaded. Check the address; the site may not be supported.");
    case Job::NoSpace:
        return tr("The disk is full. Free some space, or choose a folder on another disk.");
    case Job::DestinationError:
        return tr("The file cannot be written. Check your rights, or choose another folder or a shorter name.");
    case Job::ToolBroken:
        return tr("The download tool is damaged, incomplete, or made for another version of Python. Install it again.");
    case Job::RuntimeMissing:
        return tr("The site needs a program that runs its scripts, and there is none. Install deno or Node.js, and try "
                  "again.");
    case Job::SettingsRefused:
        return tr("The settings of the download tool are not valid. Correct them in the file tool.conf.");
    case Job::ConversionFailed:
        return tr("ffmpeg failed. Choose another stream, or install a newer ffmpeg.");
    case Job::NoError:
    case Job::OtherError:
    case Job::AddressError:
    case Job::ToolMissing:
        break;
    }
    return {};
}

QString FailureText::download(int code, bool isJoining)
{
    switch (static_cast<DownloadError>(code)) {
    case DownloadError::ProcessFailed:
        return tr("The download tool could not be run. Check that the programs beside this one are complete and may be "
                  "executed, and that memory is not short.");
    case DownloadError::ExitedWithError:
        return isJoining
            ? tr("Joining video and audio failed: ffmpeg reported an error. Check that there is room on the "
                 "disk, or choose a stream with sound of its own.")
            : tr("The download tool gave up. Check the network connection and the room on the disk, or "
                 "choose another stream; the address may have expired, so read the page again.");
    case DownloadError::Crashed:
        return isJoining
            ? tr("Joining video and audio failed: ffmpeg crashed or was killed. Try again, or choose a "
                 "stream with sound of its own.")
            : tr("The download tool crashed or was killed. Check that memory is not short, and try again.");
    case DownloadError::MergeProcessFailed:
        return tr("Joining video and audio failed: ffmpeg could not be run. Check that it stands beside this program "
                  "and may be executed.");
    case DownloadError::RenameFailed:
        return tr("The finished file could not get its final name. Check that its folder still exists and may be "
                  "written to, and that there is room on the disk.");
    }
    return tr("The download failed for an unknown reason (code %1). The log may contain more details.").arg(code);
}

QString FailureText::extraction(int code)
{
    switch (code) {
    case -1:
        return tr("The download tool could not read the page. Check the address and the network connection; the page "
                  "may not be supported.");
    case QProcess::FailedToStart:
        return tr("The Python interpreter could not be started. Check that it stands beside this program and may be "
                  "executed.");
    case QProcess::Crashed:
        return tr("The download tool crashed or was killed. Check that memory is not short, and try again.");
    case QProcess::Timedout:
        return tr("The download tool did not answer in time. Try again.");
    case QProcess::ReadError:
        return tr("The download tool's answer could not be read. Try again.");
    case QProcess::WriteError:
        return tr("The download tool could not be written to. Try again.");
    default:
        return tr("The download tool failed for an unknown reason (code %1). The log may contain more details.")
            .arg(code);
    }
}

QString FailureText::noFormatCode()
{
    return tr("The stream cannot be downloaded: its format code cannot be passed to the download tool.");
}

QString FailureText::damagedRecord()
{
    return tr("The stored data of this download cannot be read. Read the page again.");
}

QString FailureText::noVersion()
{
    return tr("The download tool does not print its version. Check that its file is complete.");
}

QString FailureText::noRenewal()
{
    return tr("The tool could not be renewed.");
}

QString FailureText::noRenewalCommand()
{
    return tr("The command nox-renew-tool is not installed.");
}

QString FailureText::noStream(const WebMediaInfo &page)
{
    if (!page.getMediaProfileList().isEmpty())
        return tr("None of the page's streams can be downloaded: their format codes cannot be passed to the tool.");
    if (page.getTitle().isEmpty())
        return tr("The download tool's description of the page could not be read. The log may contain more details.");
    return cause(Job::NothingToDownload);
}

QString FailureText::noPrivateFolder(const QString &folder, const QString &cause)
{
    return tr("Nothing can be written into \"%1\" (%2). Check your rights and the room on the disk, or choose another "
              "folder.")
        .arg(folder, cause);
}

QString FailureText::noFinalName(const QString &destination)
{
    return tr("The finished file could not be moved to \"%1\". Check that the folder still exists and may be written "
              "to.")
        .arg(destination);
}

} // namespace Nox
