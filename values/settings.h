/// @file
/// The settings that a descriptor describes, and whether a configuration keeps to them.
#ifndef QELVALUES_SETTINGS_H
#define QELVALUES_SETTINGS_H

#include "problem.h"
#include "valuetypes.h"

#include <qeldevices/device.h>

#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <optional>

namespace qel::values {

/// One setting: an entry of the "settings" of a descriptor.
///
/// Whatever a driver has put there can be read: a limit that makes no sense is none.
/// checkSettings() says what is wrong with it.
struct Setting
{
    QString key;             ///< its name in the record
    QString typeName;        ///< registered name of its type
    int type = 0;            ///< the type, where a feature value may have it; otherwise 0
    Kind kind = Kind::Other; ///< of the type
    QVariant fallback;       ///< what holds without the setting; invalid when it is required

    std::optional<double> minimum; ///< of the number, or of each element of a list
    std::optional<double> maximum; ///< as minimum
    std::optional<double> step;    ///< between the values allowed from the minimum on
    QString unit;                  ///< of the number, or of each element
    QVariantList choices;          ///< the numbers or texts allowed; empty for all
    QStringList names;             ///< what to call the choices, in the same order
    int length = 0;                ///< of a list that is not empty; 0 for any

    /// What it takes, in a few words for logs and for developers, in English.
    QString toString() const;
};

/// The settings in `descriptor`, in the order of their keys.
QVector<Setting> settingsOf(const QVariant &descriptor);

/// The setting `key` in `descriptor`; nothing when there is none.
std::optional<Setting> findSetting(const QString &key, const QVariant &descriptor);

/// What is wrong with `value` as a value of `setting`; nothing when it is allowed. An invalid value
/// stands for the default.
std::optional<Problem> checkSetting(const Setting &setting, const QVariant &value);

/// What is wrong with `configuration`, a typed record or invalid, for a feature with `descriptor`:
/// at most one problem for each setting. Keys that are no settings are ignored.
QVector<Problem> checkConfiguration(const QVariant &configuration, const QVariant &descriptor);

/// Everything that is wrong with the "settings" in the descriptor of `feature`: types that are none
/// or not those of features(), defaults, limits and choices that do not fit. Paths begin with
/// "descriptor".
QVector<Problem> checkSettings(devices::Device::DeviceFeature feature, const QVariant &descriptor);

} // namespace qel::values

#endif
