#include "identity.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>
#include <QtCore/QSaveFile>

#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <memory>

#include <unistd.h>

namespace qel::server {

const char Identity::serverName[] = "qeldevicesd";

constexpr int identityDays = 20 * 365;

namespace {

template<auto function>
struct Free
{
    template<typename T>
    void operator()(T *object) const
    {
        function(object);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Free<X509_free>>;
using Buffer = std::unique_ptr<BIO, Free<BIO_free_all>>;
using Extension = std::unique_ptr<X509_EXTENSION, Free<X509_EXTENSION_free>>;

struct Signer
{
    Key key;
    Certificate certificate;
};

QByteArray text(const Buffer &buffer)
{
    char *data = nullptr;
    const long size = BIO_get_mem_data(buffer.get(), &data);
    return QByteArray(data, int(size));
}

Credentials toPem(X509 *certificate, EVP_PKEY *key)
{
    const Buffer certificateText(BIO_new(BIO_s_mem()));
    const Buffer keyText(BIO_new(BIO_s_mem()));
    if (PEM_write_bio_X509(certificateText.get(), certificate) != 1
        || PEM_write_bio_PrivateKey(keyText.get(), key, nullptr, nullptr, 0, nullptr, nullptr) != 1)
        return {};
    return {text(certificateText), text(keyText)};
}

Signer fromPem(const Credentials &credentials)
{
    const Buffer certificate(
        BIO_new_mem_buf(credentials.certificate.constData(), credentials.certificate.size()));
    const Buffer key(BIO_new_mem_buf(credentials.key.constData(), credentials.key.size()));
    return {Key(PEM_read_bio_PrivateKey(key.get(), nullptr, nullptr, nullptr)),
            Certificate(PEM_read_bio_X509(certificate.get(), nullptr, nullptr, nullptr))};
}

bool extend(X509 *certificate, X509 *issuer, int kind, const char *value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    return extension && X509_add_ext(certificate, extension.get(), -1) == 1;
}

// Signed by `signer`, or by itself where there is none.
Credentials make(const QByteArray &name, int days, const Signer *signer, const char *usage)
{
    const Key key(EVP_EC_gen("P-256"));
    const Certificate certificate(X509_new());
    if (!key || !certificate)
        return {};
    quint64 serial = 0;
    if (RAND_bytes(reinterpret_cast<unsigned char *>(&serial), sizeof serial) != 1)
        return {};
    X509 *issuer = signer ? signer->certificate.get() : certificate.get();
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial >> 1);
    // Clocks differ.
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -24L * 60 * 60);
    X509_time_adj_ex(X509_getm_notAfter(certificate.get()), days, 0, nullptr);
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char *>(name.constData()), -1, -1,
                               0);
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(issuer));
    const QByteArray alternative = "DNS:" + name;
    const bool isExtended = signer
        ? extend(certificate.get(), issuer, NID_basic_constraints, "critical,CA:FALSE")
            && extend(certificate.get(), issuer, NID_ext_key_usage, usage)
            && extend(certificate.get(), issuer, NID_subject_alt_name, alternative.constData())
        : extend(certificate.get(), issuer, NID_basic_constraints, "critical,CA:TRUE,pathlen:0")
            && extend(certificate.get(), issuer, NID_key_usage, "critical,keyCertSign,cRLSign");
    EVP_PKEY *signingKey = signer ? signer->key.get() : key.get();
    if (!isExtended || X509_sign(certificate.get(), signingKey, EVP_sha256()) == 0)
        return {};
    return toPem(certificate.get(), key.get());
}

QByteArray read(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

bool writePrivateFile(const QString &fileName, const QByteArray &content, QString *problem)
{
    QSaveFile file(fileName);
    const bool isWritten = file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)
        && file.write(content) == content.size();
    if (isWritten && ::geteuid() == 0) {
        const QFileInfo folder(QFileInfo(fileName).absolutePath());
        if (::fchown(file.handle(), folder.ownerId(), folder.groupId()) != 0)
            file.cancelWriting();
    }
    if (isWritten && file.commit())
        return true;
    *problem = QStringLiteral("'%1' cannot be written: %2").arg(fileName, file.errorString());
    return false;
}

constexpr int lockTime = 30000; // ms

std::optional<Identity> Identity::load(const QString &folder, QString *problem)
{
    const QDir directory(folder);
    if (!directory.exists()) {
        if (!directory.mkpath(QStringLiteral("."))) {
            *problem = QStringLiteral("the folder '%1' cannot be made").arg(folder);
            return std::nullopt;
        }
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    const auto path = [&](const char *name) { return directory.filePath(QLatin1String(name)); };
    // The server may be starting while somebody is invited.
    QLockFile lock(path("identity.lock"));
    if (!QFile::exists(path("authority.key")) && !lock.tryLock(lockTime)) {
        *problem = QStringLiteral("the folder '%1' cannot be written, or is in use").arg(folder);
        return std::nullopt;
    }
    Identity identity;
    identity.m_authority = {read(path("authority.pem")), read(path("authority.key"))};
    identity.m_server = {read(path("server.pem")), read(path("server.key"))};
    if (!QFile::exists(path("authority.key"))) {
        identity.m_authority = make("qeldevicesd authority", identityDays, nullptr, nullptr);
        const Signer signer = fromPem(identity.m_authority);
        if (signer.key && signer.certificate)
            identity.m_server = make(serverName, identityDays, &signer, "serverAuth");
        // The authority's key goes last: with it, the identity is complete.
        if (!writePrivateFile(path("server.pem"), identity.m_server.certificate, problem)
            || !writePrivateFile(path("server.key"), identity.m_server.key, problem)
            || !writePrivateFile(path("authority.pem"), identity.m_authority.certificate, problem)
            || !writePrivateFile(path("authority.key"), identity.m_authority.key, problem))
            return std::nullopt;
    }
    const Signer authority = fromPem(identity.m_authority);
    const Signer server = fromPem(identity.m_server);
    if (!authority.key || !authority.certificate || !server.key || !server.certificate) {
        *problem = QStringLiteral("the identity in '%1' is damaged or may not be read: restore it "
                                  "from a backup, or delete the folder and invite everybody anew")
                       .arg(folder);
        return std::nullopt;
    }
    return identity;
}

QByteArray Identity::authority() const
{
    return m_authority.certificate;
}

Credentials Identity::server() const
{
    return m_server;
}

std::optional<Credentials> Identity::sign(const QString &id, int days) const
{
    const Signer signer = fromPem(m_authority);
    Credentials credentials = make(id.toUtf8(), days, &signer, "clientAuth");
    return credentials.key.isEmpty() ? std::nullopt : std::optional(std::move(credentials));
}

} // namespace qel::server
