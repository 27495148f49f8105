#include "certificate.h"

#include <QtCore/QDateTime>

#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <ctime>
#include <memory>

namespace qel::network {

namespace {

struct Free
{
    void operator()(X509 *object) const
    {
        X509_free(object);
    }
    void operator()(EVP_PKEY *object) const
    {
        EVP_PKEY_free(object);
    }
    void operator()(BIO *object) const
    {
        BIO_free(object);
    }
};

template<typename T, typename Read>
std::unique_ptr<T, Free> read(const QByteArray &pem, Read read)
{
    const std::unique_ptr<BIO, Free> buffer(BIO_new_mem_buf(pem.constData(), pem.size()));
    return std::unique_ptr<T, Free>(read(buffer.get(), nullptr, nullptr, nullptr));
}

QString dateOf(const ASN1_TIME *time)
{
    std::tm parts = {};
    ASN1_TIME_to_tm(time, &parts);
    return QDate(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday).toString(Qt::ISODate);
}

} // namespace

QString certificateProblem(const Connection &connection)
{
    if (connection.certificate.isEmpty())
        return {};
    const auto certificate = read<X509>(connection.certificate, &PEM_read_bio_X509);
    const auto authority = read<X509>(connection.authority, &PEM_read_bio_X509);
    const auto key = read<EVP_PKEY>(connection.key, &PEM_read_bio_PrivateKey);
    if (!certificate || !authority || !key)
        return QStringLiteral("its invitation is damaged");
    if (X509_check_private_key(certificate.get(), key.get()) != 1)
        return QStringLiteral("the key of its invitation does not belong to the certificate");
    if (X509_verify(certificate.get(), X509_get0_pubkey(authority.get())) != 1)
        return QStringLiteral("the certificate of its invitation is by another server");
    if (X509_check_purpose(certificate.get(), X509_PURPOSE_SSL_CLIENT, 0) != 1)
        return QStringLiteral("the certificate of its invitation is none for clients");
    const ASN1_TIME *begin = X509_get0_notBefore(certificate.get());
    const ASN1_TIME *end = X509_get0_notAfter(certificate.get());
    if (X509_cmp_current_time(begin) > 0)
        return QStringLiteral("its invitation is not valid before %1; is the clock right?")
            .arg(dateOf(begin));
    if (X509_cmp_current_time(end) < 0)
        return QStringLiteral("its invitation has expired on %1").arg(dateOf(end));
    return {};
}

} // namespace qel::network
