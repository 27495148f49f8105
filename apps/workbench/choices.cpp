#include "choices.h"

#include <qelvalues/valuecodec.h>

#include <QtCore/QSettings>

namespace qelworkbench::choices {

using qel::devices::DeviceInfo;

static const QString instrumentKey = QStringLiteral("lastInstrument");

// An instrument keeps its serial wherever it is plugged in. A slash would make a group.
static QString nameOf(const DeviceInfo &instrument)
{
    const QString which =
        instrument.serial().isEmpty() ? instrument.location() : instrument.serial();
    return QStringLiteral("%1 %2")
        .arg(instrument.driver(), which)
        .replace(QLatin1Char('/'), QLatin1Char('-'));
}

static QString keyOf(const DeviceInfo &instrument, const QString &what)
{
    return QStringLiteral("choices/%1/%2").arg(nameOf(instrument), what);
}

void remember(const DeviceInfo &instrument, const QString &feature,
              const QJsonObject &configuration)
{
    QSettings settings;
    settings.setValue(instrumentKey, nameOf(instrument));
    settings.setValue(keyOf(instrument, QStringLiteral("feature")), feature);
    settings.setValue(keyOf(instrument, feature), qel::values::jsonText(configuration));
}

bool isLast(const DeviceInfo &instrument)
{
    return QSettings().value(instrumentKey).toString() == nameOf(instrument);
}

QString lastFeature(const DeviceInfo &instrument)
{
    return QSettings().value(keyOf(instrument, QStringLiteral("feature"))).toString();
}

QJsonObject lastConfiguration(const DeviceInfo &instrument, const QString &feature)
{
    qel::values::Problem ignored; // of a file that somebody has edited
    const auto json = qel::values::parseJson(
        QSettings().value(keyOf(instrument, feature)).toByteArray(), &ignored);
    return json ? json->toObject() : QJsonObject();
}

} // namespace qelworkbench::choices
