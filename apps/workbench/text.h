#ifndef QELWORKBENCH_TEXT_H
#define QELWORKBENCH_TEXT_H

#include <qeldevices/device.h>

#include <QtCore/QLocale>
#include <QtCore/QString>

/// The desktop front end: models that are tested without a window, and one class a pane.
namespace qelworkbench {

/// The sentence `id` of the workbench's catalogue, with `arguments` in the places %1, %2 and so on.
QString text(const char *id);
template<typename... Texts>
QString text(const char *id, const Texts &...arguments)
{
    return text(id).arg(arguments...);
}

/// Speaks German where `locale` does, and English otherwise: library, drivers, window and numbers.
/// Everything on the screen hears of it through QEvent::LanguageChange.
void useLanguage(const QLocale &locale);

/// Half a sentence such as "there is no setting" as a whole one: a capital in front, a full stop
/// behind.
QString sentence(QString problem);

/// What to call a feature, for instance "Absorbance".
QString featureTitle(qel::devices::Device::DeviceFeature feature);

/// What to call the setting `key`: its title in the catalogue, or the key with spaces between
/// words.
QString settingTitle(const QString &key);

/// What a well holds, in words: "blank" as the language has it, a standard with its concentration.
QString contentTitle(const QString &content);

/// A value for people: four digits that count, in the language's notation; "–" when not measured.
QString valueText(double value);

} // namespace qelworkbench

#endif
