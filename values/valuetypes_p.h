#ifndef QELVALUES_VALUETYPES_P_H
#define QELVALUES_VALUETYPES_P_H

#include "valuetypes.h"

#include <QtCore/QJsonValue>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <optional>

namespace qel::values {

/// A type that JSON is defined for. Its functions return nothing where JSON would not hold the
/// value without loss, or does not hold one of the type.
struct Type
{
    int id;
    Kind kind;
    bool isPlain; ///< stands for itself in JSON, without its name
    std::optional<QJsonValue> (*write)(const QVariant &value);
    std::optional<QVariant> (*read)(const QJsonValue &json);
};

/// All of them, except the containers of any values.
const QVector<Type> &valueTypes();

const Type *findType(int id);
const Type *findType(const QString &name);

/// Whether `text` is valid Unicode, which alone survives being written as JSON.
bool isUnicode(const QString &text);

} // namespace qel::values

#endif
