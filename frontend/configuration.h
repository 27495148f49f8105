#ifndef QELFRONTEND_CONFIGURATION_H
#define QELFRONTEND_CONFIGURATION_H

#include "export.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <optional>

namespace qel::frontend {

/// @file
/// Configurations as people write them, checked against a feature's descriptor.
///
/// A configuration is a JSON object from setting to value, such as
/// `{"wavelengths": [450, 620], "rapidMode": true}`. The descriptor's "settings" say which settings
/// there are and which types a driver reads:
///
/// | Type of the setting               | Value                                                  |
/// |-----------------------------------|--------------------------------------------------------|
/// | `bool`                            | true or false                                          |
/// | numbers                           | number                                                 |
/// | `std::chrono::milliseconds`       | whole number of milliseconds                           |
/// | `QString`                         | string                                                 |
/// | lists                             | array of these                                         |
/// | `QVector<bool>`                   | array of bools, or the wells that are set: "A1:B12,C3" |
/// | `LedBarEffect_Effect` and other enumerations | name or number                              |
/// | `LedBarEffect_config::Color`      | "#rrggbb"                                              |
/// | `LedBarEffect_config::Modes`      | array of names or bits, or the number                  |
/// | `QByteArray`                      | Base64, or "@" and the path of a file                  |
///
/// Where a setting names its choices, a name stands for its choice in any of them.

/// Turns a configuration into the typed record for Device::setConfiguration(). Settings that are
/// left out get their default from the descriptor, so that the record tells the whole truth about a
/// run. An empty configuration for a feature without settings is an invalid value.
/// @param descriptor what Device::descriptor() says of the feature
/// @return nothing, and a sentence for everything that is wrong in `problems`
QELFRONTEND_EXPORT std::optional<QVariant> readConfiguration(const QJsonObject &configuration,
                                                             const QVariant &descriptor,
                                                             QStringList *problems);

/// Adds `assignment`, a text of the form KEY=VALUE, to `configuration`. Lists are separated by
/// commas, as in "wavelengths=450,620"; otherwise the value is written as in the JSON form, without
/// quotation marks. An entry of the same key is replaced.
/// @return false, and a sentence in `problem`, when `assignment` has no "=" or names no setting
QELFRONTEND_EXPORT bool assignSetting(QJsonObject *configuration, const QString &assignment,
                                      const QVariant &descriptor, QString *problem);

/// Writes a typed record in the form that readConfiguration() reads. Entries of types without such
/// a form are left out.
QELFRONTEND_EXPORT QJsonObject writeConfiguration(const QVariant &record,
                                                  const QVariant &descriptor);

/// Says what the setting `key` may be, for instance "whole numbers from 300 to 1000 nm". Empty when
/// the descriptor does not name the setting.
QELFRONTEND_EXPORT QString describeSetting(const QString &key, const QVariant &descriptor);

} // namespace qel::frontend

#endif
