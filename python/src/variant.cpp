#include "variant.h"

#include <qelfrontend/problems.h>
#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <cmath>
#include <vector>

namespace py = pybind11;

namespace qelpython {

namespace {

template<typename Hash>
py::dict dictOf(const Hash &entries)
{
    // Sorted, since a hash has no order worth showing.
    QStringList keys = entries.keys();
    keys.sort();
    py::dict dict;
    for (const QString &key : qAsConst(keys))
        dict[toPython(key)] = toPython(entries.value(key));
    return dict;
}

// The codec's form of a type that has no like in Python.
py::object encoded(const QVariant &value)
{
    qel::values::Problem problem;
    const auto json = qel::values::toJson(value, &problem);
    if (!json)
        throw py::value_error(qel::frontend::explain(problem).toStdString());
    if (json->isObject())
        return toPython(json->toObject().value(QStringLiteral("value")));
    return toPython(*json);
}

} // namespace

py::str toPython(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    return py::str(utf8.constData(), size_t(utf8.size()));
}

py::dict toPython(const qel::devices::DeviceInfo &info)
{
    py::dict dict;
    dict["interface"] = toPython(qel::values::interfaceName(info.interface()));
    dict["driver"] = toPython(info.driver());
    dict["location"] = toPython(info.location());
    dict["name"] = toPython(info.name());
    dict["serial"] = toPython(info.serial());
    return dict;
}

py::list toPython(const QStringList &texts)
{
    py::list list;
    for (const QString &text : texts)
        list.append(toPython(text));
    return list;
}

py::object toPython(const QJsonValue &json)
{
    switch (json.type()) {
    case QJsonValue::Bool:
        return py::bool_(json.toBool());
    case QJsonValue::Double: {
        const double number = json.toDouble();
        if (number == std::trunc(number) && std::abs(number) < 1e15)
            return py::int_(qint64(number));
        return py::float_(number);
    }
    case QJsonValue::String:
        return toPython(json.toString());
    case QJsonValue::Array: {
        py::list list;
        const QJsonArray entries = json.toArray();
        for (const auto &entry : entries)
            list.append(toPython(QJsonValue(entry)));
        return std::move(list);
    }
    case QJsonValue::Object: {
        py::dict dict;
        const QJsonObject entries = json.toObject();
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            dict[toPython(entry.key())] = toPython(QJsonValue(entry.value()));
        return std::move(dict);
    }
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return py::none();
}

py::object toPython(const QDateTime &time)
{
    if (!time.isValid())
        return py::none();
    const auto datetime = py::module_::import("datetime");
    return datetime.attr("datetime")
        .attr("fromtimestamp")(double(time.toMSecsSinceEpoch()) / 1000,
                               datetime.attr("timezone").attr("utc"));
}

py::object toPython(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return py::none();
    case QMetaType::Bool:
        return py::bool_(value.toBool());
    case QMetaType::Double:
    case QMetaType::Float:
        return py::float_(value.toDouble());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::UChar:
    case QMetaType::LongLong:
        return py::int_(value.toLongLong());
    case QMetaType::ULongLong:
        return py::int_(value.toULongLong());
    case QMetaType::QString:
        return toPython(value.toString());
    case QMetaType::QStringList:
        return toPython(value.toStringList());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return py::bytes(bytes.constData(), size_t(bytes.size()));
    }
    case QMetaType::QDateTime:
        return toPython(value.toDateTime());
    case QMetaType::QDate: {
        const QDate date = value.toDate();
        if (!date.isValid())
            return py::none();
        return py::module_::import("datetime").attr("date")(date.year(), date.month(), date.day());
    }
    case QMetaType::QVariantHash:
        return dictOf(value.toHash());
    case QMetaType::QVariantMap:
        return dictOf(value.toMap());
    case QMetaType::QVariantList: {
        py::list list;
        const QVariantList entries = value.toList();
        for (const QVariant &entry : entries)
            list.append(toPython(entry));
        return std::move(list);
    }
    default:
        break;
    }
    if (value.userType() == qMetaTypeId<QVector<double>>()) {
        const auto values = value.value<QVector<double>>();
        return arrayOf(values, {py::ssize_t(values.size())});
    }
    return encoded(value);
}

py::array arrayOf(const QVector<double> &values, const std::vector<py::ssize_t> &shape)
{
    const auto *owner = new QVector<double>(values);
    const py::capsule base(owner, [](void *kept) { delete static_cast<QVector<double> *>(kept); });
    py::array_t<double> array(shape, owner->constData(), base);
    py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
    return std::move(array);
}

QString fromPython(const py::handle &text)
{
    const auto utf8 = text.cast<std::string>();
    return QString::fromUtf8(utf8.data(), int(utf8.size()));
}

} // namespace qelpython
