#pragma once

#include <QtGlobal>

/**
 * @file
 * Marks what the library of the jobs exports; everything without the mark stays hidden inside it.
 */
/** @def NOX_JOBS_EXPORT
 * Stands before every class and function of the public interface.
 */
#if defined(NOX_BUILDING_JOBS)
#  define NOX_JOBS_EXPORT Q_DECL_EXPORT
#else
#  define NOX_JOBS_EXPORT Q_DECL_IMPORT
#endif
