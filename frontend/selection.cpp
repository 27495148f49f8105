#include "selection.h"

#include "frontend.h"
#include "messages_p.h"

#include <qelvalues/names.h>

#include <QtCore/QMetaEnum>
#include <QtCore/QStringList>

#include <functional>

namespace qel::frontend {

using namespace qel::devices;
using namespace qel::values;

namespace {

QString describe(const DeviceInfo &info)
{
    QString text = devicePath(info);
    if (!info.name().isEmpty())
        text += QStringLiteral(" \"%1\"").arg(info.name());
    if (!info.serial().isEmpty())
        text += QStringLiteral(" (%1)").arg(info.serial());
    return printable(text);
}

QString describeAll(const QList<DeviceInfo> &devices)
{
    QStringList lines;
    for (const DeviceInfo &info : devices)
        lines += QStringLiteral("\n  ") + describe(info);
    return lines.join(QString());
}

using Match = std::function<bool(const DeviceInfo &)>;

// What `text` may mean, the surest first.
QList<Match> meanings(const QString &text, Abbreviation abbreviation)
{
    const auto whole = [text](Qt::CaseSensitivity sensitivity) -> Match {
        return [text, sensitivity](const DeviceInfo &info) {
            return info.serial().compare(text, sensitivity) == 0
                || devicePath(info).compare(text, sensitivity) == 0;
        };
    };
    const auto name = [text](Qt::CaseSensitivity sensitivity) -> Match {
        return [text, sensitivity](const DeviceInfo &info) {
            return info.name().compare(text, sensitivity) == 0;
        };
    };
    const auto beginning = [text](Qt::CaseSensitivity sensitivity) -> Match {
        return [text, sensitivity](const DeviceInfo &info) {
            return info.serial().startsWith(text, sensitivity)
                || devicePath(info).startsWith(text, sensitivity)
                || info.name().startsWith(text, sensitivity);
        };
    };
    QList<Match> all{whole(Qt::CaseSensitive), name(Qt::CaseSensitive), whole(Qt::CaseInsensitive),
                     name(Qt::CaseInsensitive)};
    if (abbreviation == Abbreviation::Allowed)
        all += {beginning(Qt::CaseSensitive), beginning(Qt::CaseInsensitive)};
    return all;
}

QString plain(QString name)
{
    return name.toLower().remove(u'-').remove(u'_').remove(u' ');
}

QList<Device::DeviceFeature> allFeatures()
{
    QList<Device::DeviceFeature> features;
    const auto enumeration = QMetaEnum::fromType<Device::DeviceFeature>();
    for (int i = 0; i < enumeration.keyCount(); ++i) {
        const auto feature = static_cast<Device::DeviceFeature>(enumeration.value(i));
        if (feature != Device::DF_None)
            features += feature;
    }
    return features;
}

} // namespace

std::optional<DeviceInfo> selectDevice(const QString &text, const QList<DeviceInfo> &devices,
                                       QString *problem, Abbreviation abbreviation)
{
    if (devices.isEmpty()) {
        *problem = message("qelfrontend-device-none", excerpt(text));
        return {};
    }
    const auto candidates = text.isEmpty() ? QList<Match>() : meanings(text, abbreviation);
    for (const Match &matches : candidates) {
        QList<DeviceInfo> found;
        for (const DeviceInfo &info : devices) {
            if (matches(info) && !found.contains(info))
                found += info;
        }
        if (found.size() == 1)
            return found.first();
        if (found.size() > 1) {
            *problem = message("qelfrontend-device-ambiguous", excerpt(text), describeAll(found));
            return {};
        }
    }
    *problem = message("qelfrontend-device-unknown", excerpt(text), describeAll(devices));
    return {};
}

std::optional<Device::DeviceFeature> selectFeature(const QString &text, QString *problem)
{
    QString wanted = plain(text);
    if (wanted.startsWith(QLatin1String("df")))
        wanted.remove(0, 2);

    const auto features = allFeatures();
    QStringList found;
    std::optional<Device::DeviceFeature> match;
    for (const auto feature : features) {
        const QString name = plain(featureArgument(feature));
        if (name == wanted)
            return feature;
        if (wanted.isEmpty() || !name.startsWith(wanted))
            continue;
        found += featureArgument(feature);
        match = feature;
    }
    if (found.size() == 1)
        return match;
    if (found.isEmpty()) {
        for (const auto feature : features)
            found += featureArgument(feature);
        *problem =
            message("qelfrontend-feature-unknown", excerpt(text), found.join(QStringLiteral(", ")));
    } else {
        *problem = message("qelfrontend-feature-ambiguous", excerpt(text),
                           found.join(QStringLiteral(", ")));
    }
    return {};
}

QList<Device::DeviceFeature> offeredFeatures(const Device &device)
{
    QList<Device::DeviceFeature> features;
    const auto all = allFeatures();
    for (const auto feature : all) {
        if (device.hasFeature(feature))
            features += feature;
    }
    return features;
}

QString devicePath(const DeviceInfo &info)
{
    return info.driver() + u'/' + info.location();
}

} // namespace qel::frontend
