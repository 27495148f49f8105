#include "frontend.h"

#include "messages_p.h"

#include <qeldevices/device.h>
#include <qelvalues/printable.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QPointer>
#include <QtCore/QTranslator>

#include <map>
#include <memory>
#include <utility>

// The macro wants the global namespace.
static void initResources()
{
    Q_INIT_RESOURCE(qelfrontend_translations);
}

namespace qel::frontend {

static bool loadCatalogue(QTranslator *translator, const QLocale &locale)
{
    initResources();
    return translator->load(locale, QStringLiteral("frontend"), QStringLiteral("_"),
                            QStringLiteral(":/qel/frontend"));
}

void registerMetaTypes()
{
    using namespace qel::devices;
    // The library's signals name the feature type unqualified.
    qRegisterMetaType<Device::DeviceFeature>("DeviceFeature");
    qRegisterMetaType<Device::DeviceFeature>();
    qRegisterMetaType<std::chrono::milliseconds>();
    qRegisterMetaType<QList<int>>();
    qRegisterMetaType<QVector<bool>>();
    qRegisterMetaType<QVector<double>>();
    qRegisterMetaType<SlotStatus>();
    qRegisterMetaType<Orientation_result::Side>();
    qRegisterMetaType<LedBarEffect_Effect>();
    qRegisterMetaType<LedBarEffect_config::Color>();
    qRegisterMetaType<LedBarEffect_config::Modes>();
}

void installTranslations(const QLocale &locale)
{
    static QPointer<QTranslator> installed;
    delete installed;
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    if (!loadCatalogue(translator.get(), locale))
        return;
    QCoreApplication::installTranslator(translator.get());
    installed = translator.release();
}

// The library's own sentences are English in every language.
static const std::pair<const char *, const char *> deviceErrors[] = {
    {"libqeldevices-NO_DEVICE_ERROR", "qelfrontend-error-none"},
    {"libqeldevices-ERROR_DEVICE_UNKNOWN", "qelfrontend-error-unknown"},
    {"libqeldevices-ERROR_DEVICE_VENDOR_SPECIFIC", "qelfrontend-error-vendor-specific"},
    {"libqeldevices-ERROR_DEVICE_CANT_OPEN", "qelfrontend-error-cant-open"},
    {"libqeldevices-ERROR_DEVICE_NOT_READY", "qelfrontend-error-not-ready"},
    {"libqeldevices-ERROR_DEVICE_TIMEOUT", "qelfrontend-error-timeout"},
    {"libqeldevices-ERROR_DEVICE_CANT_WRITE", "qelfrontend-error-cant-write"},
    {"libqeldevices-ERROR_DEVICE_CHECKSUM_MISMATCH", "qelfrontend-error-checksum-mismatch"},
    {"libqeldevices-ERROR_DEVICE_INVALID_CONFIGURATION", "qelfrontend-error-invalid-configuration"},
    {"libqeldevices-ERROR_DEVICE_NOT_CALIBRATED", "qelfrontend-error-not-calibrated"},
    {"libqeldevices-ERROR_DEVICE_DISCONNECTED", "qelfrontend-error-disconnected"},
    {"libqeldevices-ERROR_DEVICE_BOOT_FAIL", "qelfrontend-error-boot-fail"},
    {"libqeldevices-ERROR_DEVICE_API_TOO_NEW", "qelfrontend-error-api-too-new"},
};

// What the English catalogue of a plugin says; empty when none knows the id.
static QString english(const QByteArray &id)
{
    static std::map<QString, std::unique_ptr<QTranslator>> known; // by path
    QDirIterator catalogues(QStringLiteral(":/qel/devices"), {QStringLiteral("plugin_en.qm")},
                            QDir::Files, QDirIterator::Subdirectories);
    while (catalogues.hasNext()) {
        const QString path = catalogues.next();
        auto &translator = known[path];
        if (!translator) {
            translator = std::make_unique<QTranslator>();
            translator->load(path);
        }
        const QString text = translator->translate("", id.constData());
        if (!text.isEmpty())
            return text;
    }
    return QString();
}

QString translated(const QString &id)
{
    for (const auto &[ofLibrary, own] : deviceErrors) {
        if (id == QLatin1String(ofLibrary))
            return message(own);
    }
    const QByteArray key = id.toUtf8();
    const QString text = qtTrId(key.constData());
    if (text != id)
        return text;
    const QString fallback = english(key);
    return fallback.isEmpty() ? id : fallback;
}

QString message(const char *id)
{
    const QString text = qtTrId(id);
    if (text != QLatin1String(id))
        return text;
    static const auto english = [] {
        auto translator = std::make_unique<QTranslator>();
        loadCatalogue(translator.get(), QLocale(QLocale::English));
        return translator;
    }();
    return english->translate("", id);
}

QString printable(const QString &text)
{
    return values::printable(text);
}

QString excerpt(const QString &text, int longest)
{
    const QString beginning = printable(text.left(longest));
    return text.size() > longest ? beginning + QChar(0x2026) : beginning;
}

} // namespace qel::frontend
