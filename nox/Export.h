#pragma once

#include <QtGlobal>

/**
 * @file
 * Marks what the shared library exports; everything without the mark stays hidden inside it.
 */
#if defined(NOX_BUILDING_LIBRARY)
#  define NOX_EXPORT Q_DECL_EXPORT
#else
#  define NOX_EXPORT Q_DECL_IMPORT
#endif
