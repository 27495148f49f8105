#ifndef QELFRONTEND_STARTUP_H
#define QELFRONTEND_STARTUP_H

#include "export.h"

#include <QtCore/QStringList>

namespace qel::frontend {

/// Makes the library ready: loads the driver plugins, registers types with the meta-type system,
/// installs the translations for the default locale. To be called once, in the thread of the
/// application object, after QLocale::setDefault() if the user's language is another than the
/// system's.
///
/// Plugins are loaded from the folders of qel::devices::init() and from folders of the user's:
/// `pluginFolders`, and those that the environment variable QELDEVICES_PLUGIN_PATH lists, separated
/// by colons. Where two drivers have the same name, the user's goes before an installed one, and
/// one from `pluginFolders` before one from the environment.
///
/// @return a sentence for each folder of the user's that is none
QELFRONTEND_EXPORT QStringList startLibrary(const QStringList &pluginFolders = QStringList());

} // namespace qel::frontend

#endif
