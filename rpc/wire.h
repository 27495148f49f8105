#ifndef RPC_WIRE_H
#define RPC_WIRE_H

#include "instruments.pb.h"

#include <qeldevices/deviceinfo.h>

#include <QtCore/QVariant>

#include <cstddef>
#include <optional>

/// Drives instruments in other processes and on other machines: the device at the near end, and
/// what serves it at the far one.
namespace qel::rpc {

/// The version of the protocol. It changes when an older peer would misunderstand.
constexpr int protocolVersion = 4;

/// About how much memory a message takes while it waits, in bytes: a small one takes more than its
/// content.
std::size_t memoryOf(const google::protobuf::MessageLite &message);

/// How this side introduces itself.
wire::Hello hello();

/// What is wrong with the peer's introduction, as a sentence that names both versions; empty when
/// nothing is.
QString mismatch(const wire::Hello &peer);

std::string toWire(const QString &text);
QString fromWire(const std::string &text);

/// The call that a command stands for, as people name it: "execute(DF_Orientation)".
QString callName(const wire::Command &command);

wire::Record toWire(const devices::DeviceInfo &info);
devices::DeviceInfo fromWire(const wire::Record &record);

/// The plugin of the driver of a RemoteDevice, which has it as the property "driverPlugin": a map
/// with the texts "file", "manufacturer" and "version".
constexpr char pluginProperty[] = "driverPlugin";
QVariantMap fromWire(const wire::Plugin &plugin);

/// The value, or in its place why it cannot travel.
wire::Value toWire(const QVariant &value);

/// @return nothing, and a sentence in `problem`, for a value that could not travel
std::optional<QVariant> fromWire(const wire::Value &value, QString *problem);

} // namespace qel::rpc

#endif
