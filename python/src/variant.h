#ifndef PYTHON_VARIANT_H
#define PYTHON_VARIANT_H

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <qeldevices/deviceinfo.h>

#include <QtCore/QDateTime>
#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <vector>

namespace qelpython {

/// @file
/// What Qt holds as Python objects. Everything here needs the interpreter's lock.

pybind11::str toPython(const QString &text);
pybind11::list toPython(const QStringList &texts);
/// The identity of an instrument, as a dict of texts.
pybind11::dict toPython(const qel::devices::DeviceInfo &info);
/// Arrays become lists, objects dicts, null None; a whole number becomes an int.
pybind11::object toPython(const QJsonValue &json);
/// The time as datetime.datetime in UTC; None for an invalid one.
pybind11::object toPython(const QDateTime &time);

/// A feature value. Records become dicts, enumerators their names, times their milliseconds,
/// `QVector<double>` a numpy array as arrayOf() makes it, `QDateTime` and `QDate` their like in
/// datetime, an invalid value None. Everything else becomes what its JSON form holds.
pybind11::object toPython(const QVariant &value);

/// An array that shares the memory of `values`, and can therefore only be read.
/// @param shape the sizes of its dimensions, whose product is the size of `values`
pybind11::array arrayOf(const QVector<double> &values, const std::vector<pybind11::ssize_t> &shape);

QString fromPython(const pybind11::handle &text);

} // namespace qelpython

#endif
