#include "frontend.h"

#include "messages_p.h"

#include <qeldevices/device.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QTranslator>

#include <memory>

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

QString translated(const QString &id)
{
    return qtTrId(id.toUtf8().constData());
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

QString printable(const QString &text, int longest)
{
    QString result = text.left(longest);
    for (QChar &character : result) {
        if (!character.isPrint())
            character = QChar::ReplacementCharacter;
    }
    if (text.size() > longest)
        result += QChar(0x2026);
    return result;
}

} // namespace qel::frontend
