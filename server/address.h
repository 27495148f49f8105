#ifndef SERVER_ADDRESS_H
#define SERVER_ADDRESS_H

#include <QtCore/QString>

namespace qel::server {

/// `text` as ADDRESS:PORT, where the address is a host name, an IPv4 address, or an IPv6 address in
/// brackets. Without a port it gets `port`, if that is not 0.
/// @return nothing, and a sentence in `problem`, when it is none
QString completeAddress(const QString &text, int port, QString *problem);

} // namespace qel::server

#endif
