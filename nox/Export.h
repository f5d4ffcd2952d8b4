#pragma once

#include <QtGlobal>

/**
 * @file
 * Marks what the shared library exports. Everything else is hidden.
 */
/** @def NOX_EXPORT
 * Marks a class or function of the public interface.
 */
#if defined(NOX_BUILDING_LIBRARY)
#  define NOX_EXPORT Q_DECL_EXPORT
#else
#  define NOX_EXPORT Q_DECL_IMPORT
#endif
