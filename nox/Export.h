#pragma once

#include <QtGlobal>

/**
 * @file
 * Marks what the shared library exports; everything without the mark stays hidden inside it.
 */
/** @def NOX_EXPORT
 * Stands before every class and function of the public interface.
 */
#if defined(NOX_BUILDING_LIBRARY)
#  define NOX_EXPORT Q_DECL_EXPORT
#else
#  define NOX_EXPORT Q_DECL_IMPORT
#endif
