#pragma once

/**
 * @file
 * Every public header of the second library, that of the jobs, in one.
 */
#include <nox/jobs/AddressList.h>
#include <nox/jobs/Conversion.h>
#include <nox/jobs/Destination.h>
#include <nox/jobs/DownloadJob.h>
#include <nox/jobs/DownloadQueue.h>
#include <nox/jobs/DownloadRequest.h>
#include <nox/jobs/DownloadStore.h>
#include <nox/jobs/Job.h>
#include <nox/jobs/JobsExport.h>
#include <nox/jobs/JobsTranslation.h>
#include <nox/jobs/PageJob.h>
#include <nox/jobs/PlaylistEntry.h>
#include <nox/jobs/PlaylistJob.h>
#include <nox/jobs/SoundFormat.h>
#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/StreamPreference.h>
#include <nox/jobs/StreamText.h>
#include <nox/jobs/TextSanitizer.h>
#include <nox/jobs/ToolRenewalJob.h>
#include <nox/jobs/ToolSettings.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/ToolVersionJob.h>
#include <nox/jobs/TransferFigures.h>
#include <nox/jobs/UrlCheck.h>
