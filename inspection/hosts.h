#ifndef QEL_INSPECTION_HOSTS_H
#define QEL_INSPECTION_HOSTS_H

#include "loadtrial.h"

#include <QtCore/QVariant>

class QObject;

namespace qel::inspection {

/// What a plugin says of the other plugins that it runs in processes of their own, which may take
/// some seconds; empty for any other plugin.
/// @param root the root object of a loaded plugin
QVariantList hostsOf(QObject *root);

/// The same as outcomes, one for each file.
QVector<LoadOutcome> outcomesOf(const QVariantList &hosts);

} // namespace qel::inspection

#endif
