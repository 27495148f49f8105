// clang-format off
/// @file
/// Feature values as JSON and back, without loss: type and value survive.
///
/// Plain JSON stands for what it holds by itself:
///
/// | JSON   | Value                                         |
/// |--------|-----------------------------------------------|
/// | null   | an invalid `QVariant`                         |
/// | bool   | `bool`                                        |
/// | number | `double`                                      |
/// | string | `QString`                                     |
/// | array  | `QVariantList`                                |
/// | object | `QVariantHash`, unless it has the key "$type" |
///
/// Every other value is an object of two entries, the registered name of its type and what it
/// holds, for instance `{"$type": "std::chrono::milliseconds", "value": 1500}`:
///
/// | Type                                        | "value"                                        |
/// |---------------------------------------------|------------------------------------------------|
/// | `double` (NaN, infinite, -0)                | null, "inf", "-inf", "-0"                      |
/// | `float`                                     | number, or as `double`                         |
/// | `int`, `uint`, `uchar`                      | number                                         |
/// | `qlonglong`, `qulonglong`                   | number; from ±2^53 on its digits as a string   |
/// | `std::chrono::milliseconds`                 | as `qlonglong`                                 |
/// | `QStringList`                               | array of strings                               |
/// | `QList<int>`                                | array of numbers                               |
/// | `QVector<bool>`                             | array of bools                                 |
/// | `QVector<double>`                           | array of numbers, or as `double`               |
/// | `QByteArray`                                | Base64                                         |
/// | `QDate`                                     | ISO 8601; null for an invalid date             |
/// | `QDateTime`, not in a named time zone       | ISO 8601 with milliseconds; null when invalid  |
/// | `qel::devices::LedBarEffect_Effect`         | name of the enumerator; a number without one   |
/// | `qel::devices::SlotStatus`                  | the same                                       |
/// | `qel::devices::Orientation_result::Side`    | the same                                       |
/// | `qel::devices::LedBarEffect_config::Color`  | "#rrggbb"                                      |
/// | `qel::devices::LedBarEffect_config::Modes`  | number                                         |
/// | `QVariantMap`                               | object                                         |
/// | `QVariantHash` with a key "$type"           | object                                         |
///
/// Values of other types, texts that are no valid Unicode, and values beyond the limits below are
/// refused in both directions. The same value always gives the same JSON.
// clang-format on
#ifndef QELVALUES_VALUECODEC_H
#define QELVALUES_VALUECODEC_H

#include "problem.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonValue>
#include <QtCore/QVariant>

#include <optional>

namespace qel::values {

/// How deep values may nest.
constexpr int maximumValueDepth = 64;
/// How many values and list elements a value may hold altogether.
constexpr int maximumValueCount = 1000000;
/// How long a JSON text may be, in bytes.
constexpr int maximumJsonSize = 64 * 1024 * 1024;

/// Writes a feature value as JSON.
/// @return nothing, and what is wrong in `problem`, when the value cannot be written
std::optional<QJsonValue> toJson(const QVariant &value, Problem *problem);

/// Reads what toJson() wrote.
/// @return nothing, and what is wrong in `problem`, when it is nothing of the kind
std::optional<QVariant> fromJson(const QJsonValue &json, Problem *problem);

/// Writes what `value` holds without the name of its type: the "value" of the table above.
/// @return nothing when JSON is not defined for the type, or would not hold the value
std::optional<QJsonValue> contentToJson(const QVariant &value);

/// Reads what contentToJson() wrote of a value of the meta-type `type`.
/// @return nothing when it is not the content of one
std::optional<QVariant> contentFromJson(const QJsonValue &json, int type);

/// Reads a JSON text, whose top may be any JSON value.
/// @return nothing, and what is wrong in `problem`, when it is no JSON, too long, or has an object
/// that names a key twice
std::optional<QJsonValue> parseJson(const QByteArray &text, Problem *problem);

/// Writes any JSON value as text, in one line without a line break.
QByteArray jsonText(const QJsonValue &json);

} // namespace qel::values

#endif
