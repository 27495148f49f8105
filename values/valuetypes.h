/// @file
/// The types that feature values have.
#ifndef QELVALUES_VALUETYPES_H
#define QELVALUES_VALUETYPES_H

#include <QtCore/QString>

namespace qel::values {

/// What distinguishes types for whoever reads or shows their values.
enum class Kind {
    Bool,         ///< `bool`
    Integer,      ///< whole numbers of any size
    Number,       ///< `double`, `float`
    Milliseconds, ///< `std::chrono::milliseconds`
    Text,         ///< `QString`
    Integers,     ///< `QList<int>`
    Numbers,      ///< `QVector<double>`
    Texts,        ///< `QStringList`
    Bytes,        ///< `QByteArray`
    Wells,        ///< `QVector<bool>`
    Flags,        ///< `LedBarEffect_config::Modes`
    Color,        ///< `LedBarEffect_config::Color`
    Name,         ///< an enumeration
    Other,        ///< times, and what no feature value has
};

/// The kind of the meta-type `type`.
Kind kindOf(int type);

/// The meta-type called `name`, registered or not; QMetaType::UnknownType when no feature value has
/// it.
int typeNamed(const QString &name);

} // namespace qel::values

#endif
