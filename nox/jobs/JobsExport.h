#pragma once

#include <QtGlobal>

/**
 * @file
 * Marks the exported symbols of the second library; all others are hidden.
 */
/** @def NOX_JOBS_EXPORT
 * Stands before every class and function of the public interface.
 */
#if defined(NOX_BUILDING_JOBS)
#  define NOX_JOBS_EXPORT Q_DECL_EXPORT
#else
#  define NOX_JOBS_EXPORT Q_DECL_IMPORT
#endif
