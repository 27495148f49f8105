#include "text.h"

#include <qelfrontend/frontend.h>
#include <qelvalues/names.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>

#include <cmath>

// The macro wants the global namespace.
static void initResources()
{
    Q_INIT_RESOURCE(workbench_translations);
    Q_INIT_RESOURCE(workbench);
}

namespace qelworkbench {

QString text(const char *id)
{
    return qtTrId(id);
}

void useLanguage(const QLocale &locale)
{
    initResources();
    const bool isGerman = locale.language() == QLocale::German;
    const QLocale chosen(isGerman ? QLocale::German : QLocale::English);
    QLocale::setDefault(chosen);
    qel::frontend::installTranslations(chosen);
    // In the second the English text is the id, so that English needs none.
    static const std::pair<const char *, QTranslator *> catalogues[] = {
        {"workbench", new QTranslator(QCoreApplication::instance())},
        {"findings", new QTranslator(QCoreApplication::instance())},
    };
    for (const auto &[name, translator] : catalogues) {
        QCoreApplication::removeTranslator(translator);
        if (translator->load(chosen, QString::fromLatin1(name), QStringLiteral("_"),
                             QStringLiteral(":/qel/workbench")))
            QCoreApplication::installTranslator(translator);
    }
}

QString sentence(QString problem)
{
    if (problem.isEmpty())
        return problem;
    problem[0] = problem.at(0).toUpper();
    return problem.endsWith(QLatin1Char('.')) ? problem : problem + QLatin1Char('.');
}

// The catalogue's text, or what takes its place.
static QString textOr(const QString &id, const QString &otherwise)
{
    const QString found = qtTrId(id.toUtf8().constData());
    return found == id ? otherwise : found;
}

// "rapidMode" and "firmware-info" as "Rapid mode" and "Firmware info".
static QString spelled(const QString &name)
{
    QString words;
    for (const QChar letter : name) {
        if (letter.isUpper() && !words.isEmpty())
            words += QLatin1Char(' ');
        words += letter == QLatin1Char('-') ? QChar(QLatin1Char(' ')) : letter.toLower();
    }
    if (!words.isEmpty())
        words[0] = words.at(0).toUpper();
    return words;
}

QString featureTitle(qel::devices::Device::DeviceFeature feature)
{
    const QString name = qel::values::featureArgument(feature);
    return textOr(QStringLiteral("qelworkbench-feature-") + name, spelled(name));
}

QString settingTitle(const QString &key)
{
    return textOr(QStringLiteral("qelworkbench-setting-") + key, spelled(key));
}

QString contentTitle(const QString &content)
{
    const QString kind = content.section(QLatin1Char(' '), 0, 0);
    const QString concentration = content.section(QLatin1Char(' '), 1);
    const QString title = textOr(QStringLiteral("qelworkbench-content-") + kind, kind);
    return concentration.isEmpty()
        ? title
        : title + QLatin1Char(' ') + QLocale().toString(concentration.toDouble(), 'g', 6);
}

QString valueText(double value)
{
    if (std::isnan(value))
        return QStringLiteral("–");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("∞") : QStringLiteral("−∞");
    QLocale locale;
    const double size = std::abs(value);
    if (size >= 1e7 || (size > 0 && size < 1e-3))
        return locale.toString(value, 'e', 2);
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const int magnitude = size < 1 ? 0 : int(std::floor(std::log10(size)));
    return locale.toString(value, 'f', std::max(0, 3 - magnitude));
}

} // namespace qelworkbench
