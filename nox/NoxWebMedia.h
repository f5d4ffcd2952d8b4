#pragma once

/**
 * @file
 * Includes all public headers of the library.
 */

/** @namespace Nox
 * The library's classes and types. The free functions are outside this namespace.
 */
#include <nox/Export.h>
#include <nox/front/DownloadError.h>
#include <nox/front/ToolEnvironment.h>
#include <nox/front/WebMediaDownloader.h>
#include <nox/front/WebMediaDownloaderFactory.h>
#include <nox/front/WebMediaInfoExtractor.h>
#include <nox/log/Logger.h>
#include <nox/log/ModuleLog.h>
#include <nox/model/FileMediaInfo.h>
#include <nox/model/MediaInfo.h>
#include <nox/model/MediaList.h>
#include <nox/model/MediaProfile.h>
#include <nox/model/MediaType.h>
#include <nox/model/WebMediaInfo.h>
#include <nox/parse/JsonHelper.h>
#include <nox/parse/YdOutputParser.h>
#include <nox/util/ByteNumber.h>
#include <nox/util/Utilities.h>
