#ifndef QELWORKBENCH_CHOICES_H
#define QELWORKBENCH_CHOICES_H

#include <qeldevices/deviceinfo.h>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// What the operator has last measured with, remembered from one start to the next. Features go by
/// the names of featureArgument().
namespace qelworkbench::choices {

void remember(const qel::devices::DeviceInfo &instrument, const QString &feature,
              const QJsonObject &configuration);

/// Whether `instrument` is the one that was last measured with.
bool isLast(const qel::devices::DeviceInfo &instrument);
/// What was last measured on `instrument`; empty for nothing.
QString lastFeature(const qel::devices::DeviceInfo &instrument);
/// With which settings, as readConfiguration() takes them; empty for none.
QJsonObject lastConfiguration(const qel::devices::DeviceInfo &instrument, const QString &feature);

} // namespace qelworkbench::choices

#endif
