#ifndef NETWORK_CERTIFICATE_H
#define NETWORK_CERTIFICATE_H

#include "network.h"

namespace qel::network {

/// What is wrong with what this side has to show to the server, as a sentence; empty when nothing
/// is. A server that does not like it says nothing but that the connection is closed.
QString certificateProblem(const Connection &connection);

} // namespace qel::network

#endif
