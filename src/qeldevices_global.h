/// @file
/// The library's start and version, and what every header needs.
#ifndef QELDEVICES_GLOBAL_H
#define QELDEVICES_GLOBAL_H

#include <QtCore/QString>
#include <QtCore/QtGlobal>

/// Marks what the shared library exports; everything else stays hidden inside it.
#if defined(QELDEVICES_LIBRARY)
#    define QELDEVICES_EXPORT Q_DECL_EXPORT
#else
#    define QELDEVICES_EXPORT Q_DECL_IMPORT
#endif

/// Uniform access to laboratory plate readers, whoever made them.
namespace qel::devices {

/// Makes the library ready: loads the driver plugins and installs the translations.
///
/// Call it once, on the thread of the application object, after that object exists. It loads every
/// file below the folder "devicedrivers" beside the executable, then below the folder of that name
/// in Qt's plugin directory, and installs the library's and the plugins' catalogues for the current
/// default locale. The catalogues are loaded again whenever a `QEvent::LanguageChange` reaches the
/// application object while `QLocale()` differs from the locale of the last load.
///
/// Nothing is returned: what could not be loaded is reported as a warning in "qel.devices", and so
/// is a missing application object, without which nothing else is done. There is no guard against a
/// second call, which repeats every step.
QELDEVICES_EXPORT void init();

/// The library's version and build, for instance "v1.3.0 (0f3a9c2e)".
///
/// The eight hexadecimal digits name the commit the library was built from; they are zeros where
/// the sources were not under version control.
QELDEVICES_EXPORT QString version();

} // namespace qel::devices

#endif
