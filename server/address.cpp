#include "address.h"

#include <QtCore/QRegularExpression>

#include <arpa/inet.h>

namespace qel::server {

static bool isNumeric(int family, const QString &host)
{
    in6_addr ignored = {};
    return ::inet_pton(family, host.toUtf8().constData(), &ignored) == 1;
}

static bool isHost(const QString &host)
{
    // A zone, as in fe80::1%eth0, means something on the machine that uses it only.
    static const QRegularExpression bracketed(
        QStringLiteral("^\\[([^%]*)(%[A-Za-z0-9._-]+)?\\]\\z"));
    const auto inside = bracketed.match(host);
    if (inside.hasMatch())
        return isNumeric(AF_INET6, inside.captured(1));
    static const QRegularExpression digits(QStringLiteral("^[0-9.]+\\z"));
    if (digits.match(host).hasMatch())
        return isNumeric(AF_INET, host);
    static const QRegularExpression name(
        QStringLiteral("^[A-Za-z0-9_][A-Za-z0-9_-]*(\\.[A-Za-z0-9_-]+)*\\.?\\z"));
    return name.match(host).hasMatch();
}

static bool isPort(const QString &text)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,5}\\z"));
    return digits.match(text).hasMatch() && text.toInt() >= 1 && text.toInt() <= 65535;
}

QString completeAddress(const QString &text, int port, QString *problem)
{
    static const QRegularExpression form(QStringLiteral("^(\\[[^]]*\\]|[^:[]*)(:(.*))?\\z"),
                                         QRegularExpression::DotMatchesEverythingOption);
    const auto parts = form.match(text);
    if (!parts.hasMatch() || isNumeric(AF_INET6, text)) {
        *problem = QStringLiteral("'%1' is no address with a port: an IPv6 address stands in "
                                  "brackets, '[::1]:7735' for instance")
                       .arg(text);
        return {};
    }
    const QString host = parts.captured(1);
    const bool hasPort = parts.capturedStart(2) >= 0;
    if (host.isEmpty())
        *problem = QStringLiteral("'%1' lacks the address").arg(text);
    else if (!isHost(host))
        *problem = QStringLiteral("'%1' is neither a host name nor an IP address").arg(host);
    else if (!hasPort && port == 0)
        *problem = QStringLiteral("'%1' lacks the port: '%1:7735' for instance").arg(text);
    else if (hasPort && !isPort(parts.captured(3)))
        *problem = QStringLiteral("'%1' is no port from 1 to 65535").arg(parts.captured(3));
    else
        return hasPort ? text : QStringLiteral("%1:%2").arg(text, QString::number(port));
    return {};
}

} // namespace qel::server
