#ifndef SIMULATOR_SETTINGS_H
#define SIMULATOR_SETTINGS_H

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace qel::simulator {

/// Checks `configuration` against `settings`, the part of a descriptor that describes it.
/// @return a sentence on the first setting that is missing, of another type or not allowed; empty
/// where there is none
QString checkConfiguration(const QVariant &configuration, const QVariantHash &settings);

} // namespace qel::simulator

#endif
