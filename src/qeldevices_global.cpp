#include "qeldevices_global.h"

#include "buildidentifier.h"
#include "devicebroker.h"
#include "logging.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QEvent>
#include <QtCore/QFileInfo>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

#include <memory>

namespace qel::devices {

namespace {

// Keeps the library's and the plugins' catalogues in step with the application's language.
class LanguageWatcher : public QObject
{
public:
    explicit LanguageWatcher(QObject *parent);
    ~LanguageWatcher() override = default;

    QTranslator *commonTranslator();
    bool eventFilter(QObject *watched, QEvent *event) override;
    void loadTranslations();

private:
    void removePluginTranslators();
    void loadPluginTranslations(const QString &directory);

    QLocale m_locale{QLocale::C, QLocale::AnyCountry};
    QTranslator m_translator;
    QList<std::shared_ptr<QTranslator>> m_pluginTranslators;
};

LanguageWatcher::LanguageWatcher(QObject *parent)
    : QObject(parent)
{ }

QTranslator *LanguageWatcher::commonTranslator()
{
    return &m_translator;
}

bool LanguageWatcher::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::LanguageChange && QLocale() != m_locale)
        loadTranslations();
    return false;
}

// The suffix must be a null string: an empty one makes the translator look for files without any.
static bool loadCatalogue(QTranslator *translator, const QLocale &locale, const QString &baseName,
                          const QString &directory)
{
    return translator->load(locale, baseName, QStringLiteral("_"), directory, QString());
}

void LanguageWatcher::loadTranslations()
{
    // Stored first: installing and removing translators sends language changes of its own.
    m_locale = QLocale();
    qCInfo(LogCDevices) << "Loading translations for locale" << m_locale;

    const QString root = QStringLiteral(":/qel/devices");
    if (loadCatalogue(&m_translator, m_locale, QStringLiteral("qeldevices"), root))
        qCInfo(LogCDevices) << "Successfully loaded common device driver translations.";
    else
        qCWarning(LogCDevices) << "Failed to load common device driver translations.";

    removePluginTranslators();

    QDirIterator directories(root, QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (directories.hasNext())
        loadPluginTranslations(directories.next());
}

void LanguageWatcher::removePluginTranslators()
{
    // A copy: a receiver of the language changes sent here may switch the language once more, which
    // replaces the list.
    const auto translators = m_pluginTranslators;
    for (const auto &translator : translators)
        QCoreApplication::removeTranslator(translator.get());
    m_pluginTranslators = {};
}

void LanguageWatcher::loadPluginTranslations(const QString &directory)
{
    const auto translator = std::make_shared<QTranslator>();
    if (!loadCatalogue(translator.get(), m_locale, QStringLiteral("plugin"), directory)) {
        qCWarning(LogCDevices) << "Failed to load device plugin translations from" << directory;
        return;
    }
    qCInfo(LogCDevices) << "Successfully loaded device plugin translations from"
                        << QFileInfo(directory).canonicalPath();
    m_pluginTranslators.append(translator);
    QCoreApplication::installTranslator(translator.get());
}

} // namespace

void init()
{
    if (!QCoreApplication::instance()) {
        qCWarning(LogCDevices) << "The application object is missing: create it before calling "
                                  "qel::devices::init(). No driver is loaded.";
        return;
    }
    qCInfo(LogCDevices) << "Initializing device driver library"
                        << version().toLocal8Bit().constData();

    const QString folders[] = {
        QCoreApplication::applicationDirPath() + QStringLiteral("/devicedrivers"),
        QLibraryInfo::location(QLibraryInfo::PluginsPath) + QStringLiteral("/devicedrivers"),
    };
    for (const QString &folder : folders)
        DeviceBroker::loadAllDevicePlugins(folder);

    qCInfo(LogCDevices) << QStringLiteral(
                               "Finished loading device plugins. Available drivers:\n\t%1")
                               .arg(DeviceBroker::availableDrivers().join(QStringLiteral("\n\t")))
                               .toLocal8Bit()
                               .constData();

    auto *watcher = new LanguageWatcher(QCoreApplication::instance());
    QCoreApplication::instance()->installEventFilter(watcher);
    QCoreApplication::installTranslator(watcher->commonTranslator());
    watcher->loadTranslations();
}

QString version()
{
    return QStringLiteral("v%1 (%2)")
        .arg(QStringLiteral(QELDEVICES_VERSION), QStringLiteral(QELDEVICES_BUILD_IDENTIFIER));
}

} // namespace qel::devices
