#ifndef QELFRONTEND_EXPORT_H
#define QELFRONTEND_EXPORT_H

#include <QtCore/qglobal.h>

/// Marks what leaves the library libqelfrontend.
#if defined(QELFRONTEND_LIBRARY)
#    define QELFRONTEND_EXPORT Q_DECL_EXPORT
#else
#    define QELFRONTEND_EXPORT Q_DECL_IMPORT
#endif

#endif
