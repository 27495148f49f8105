#ifndef NETWORK_CONNECTIONS_H
#define NETWORK_CONNECTIONS_H

#include <QtCore/QStandardPaths>
#include <QtCore/QString>

namespace qel::network {

/// Where the connections of this user are stored, each in a file NAME.json.
inline QString connectionFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/qeldevices/connections");
}

/// Names the file of one more connection. Set, but empty, it asks for the driver all the same.
constexpr char connectionVariable[] = "QELDEVICES_NETWORK";

} // namespace qel::network

#endif
