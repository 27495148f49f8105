#ifndef ISOLATION_PLUGINFILES_H
#define ISOLATION_PLUGINFILES_H

#include <QtCore/QStringList>

namespace qel::isolated {

/// All plugin files in the folders for isolated drivers: folders named "devicedrivers-isolated"
/// beside each one that the library looks into, and those that QELDEVICES_ISOLATED names, separated
/// by colons.
QStringList pluginFiles();

} // namespace qel::isolated

#endif
