#pragma once

#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/StreamPreference.h>
#include <nox/model/WebMediaInfo.h>

#include <QString>

namespace NoxFetch {

/** @p page as a JSON document: the page, its streams with the best first, and the default choice. */
QString jsonRecord(const Nox::WebMediaInfo &page, const Nox::StreamChoice &streams,
                   const Nox::StreamPreference &preference);

} // namespace NoxFetch
