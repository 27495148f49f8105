#include "wire.h"

#include "stream.h"

#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <qeldevices/qeldevices_global.h>

namespace qel::rpc {

using devices::DeviceInfo;
using Feature = devices::Device::DeviceFeature;
using namespace values;

// What stands around a value in a message is small.
constexpr int maximumValueSize = maximumMessageSize - 1024 * 1024;

std::string toWire(const QString &text)
{
    return text.toStdString();
}

QString fromWire(const std::string &text)
{
    return QString::fromStdString(text);
}

std::size_t memoryOf(const google::protobuf::MessageLite &message)
{
    constexpr std::size_t besidesItsContent = 512;
    return message.ByteSizeLong() + besidesItsContent;
}

wire::Hello hello()
{
    wire::Hello hello;
    hello.set_protocol(protocolVersion);
    hello.set_library(toWire(devices::version()));
    return hello;
}

QString mismatch(const wire::Hello &peer)
{
    if (peer.protocol() == protocolVersion)
        return {};
    return QStringLiteral(
               "the other side speaks version %1 of the protocol (library %2), this side "
               "version %3 (library %4); install the same release on both")
        .arg(QString::number(peer.protocol()), fromWire(peer.library()).left(80),
             QString::number(protocolVersion), devices::version());
}

QString callName(const wire::Command &command)
{
    switch (command.what_case()) {
    case wire::Command::kConfiguration:
        return QStringLiteral("setConfiguration(%1)")
            .arg(values::featureName(Feature(command.configuration().feature())));
    case wire::Command::kOpen:
        return QStringLiteral("open()");
    case wire::Command::kClose:
        return QStringLiteral("close()");
    case wire::Command::kUpdate:
        return QStringLiteral("update()");
    case wire::Command::kReset:
        return QStringLiteral("reset()");
    case wire::Command::kExecute:
        return QStringLiteral("execute(%1)").arg(values::featureName(Feature(command.execute())));
    case wire::Command::kConfirm:
        return QStringLiteral("confirmAction()");
    case wire::Command::kAbort:
        return QStringLiteral("abortAction()");
    case wire::Command::kAttach:
        return QStringLiteral("createDevice()");
    case wire::Command::kReceived:
        return QStringLiteral("executed()");
    case wire::Command::kLeave:
    case wire::Command::WHAT_NOT_SET:
        break;
    }
    return QString();
}

wire::Record toWire(const DeviceInfo &info)
{
    wire::Record record;
    record.set_interface(info.interface());
    record.set_driver(toWire(info.driver()));
    record.set_location(toWire(info.location()));
    record.set_name(toWire(info.name()));
    record.set_serial(toWire(info.serial()));
    return record;
}

DeviceInfo fromWire(const wire::Record &record)
{
    return {DeviceInfo::Interface(record.interface()), fromWire(record.driver()),
            fromWire(record.location()), fromWire(record.name()), fromWire(record.serial())};
}

QVariantMap fromWire(const wire::Plugin &plugin)
{
    return {{QStringLiteral("file"), fromWire(plugin.file())},
            {QStringLiteral("manufacturer"), fromWire(plugin.manufacturer())},
            {QStringLiteral("version"), fromWire(plugin.version())}};
}

wire::Value toWire(const QVariant &value)
{
    wire::Value travelling;
    Problem problem;
    const auto json = toJson(value, &problem);
    const QByteArray text = json ? jsonText(*json) : QByteArray();
    if (!json)
        travelling.set_problem(toWire(toString(problem)));
    else if (text.size() > maximumValueSize)
        travelling.set_problem("the value is too large");
    else
        travelling.set_json(text.toStdString());
    return travelling;
}

std::optional<QVariant> fromWire(const wire::Value &value, QString *problem)
{
    if (!value.problem().empty()) {
        *problem = fromWire(value.problem());
        return std::nullopt;
    }
    Problem fault;
    const auto json = parseJson(QByteArray::fromStdString(value.json()), &fault);
    const auto read = json ? fromJson(*json, &fault) : std::nullopt;
    if (!read)
        *problem = toString(fault);
    return read;
}

} // namespace qel::rpc
