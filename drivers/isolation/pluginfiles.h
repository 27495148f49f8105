#ifndef ISOLATION_PLUGINFILES_H
#define ISOLATION_PLUGINFILES_H

#include <QtCore/QStringList>

namespace qel::isolated {

/// The name of the object that has the processes, a child of the application object.
constexpr char isolationName[] = "qeldevices-isolation";

/// All plugin files in the folders for isolated drivers: folders named "devicedrivers-isolated"
/// beside each one that the library looks into, and those that QELDEVICES_ISOLATED names, separated
/// by colons. Where it names a file, that is the only one.
QStringList pluginFiles();

} // namespace qel::isolated

#endif
