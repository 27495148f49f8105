#ifndef QEL_CONFORMANCE_CATALOGUES_H
#define QEL_CONFORMANCE_CATALOGUES_H

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace qel::conformance {

/// The folders of the catalogues of the plugins that are loaded.
QStringList catalogueFolders();

/// The languages whose catalogue of the plugin lacks `id`, in words; empty when none does.
/// Languages without a catalogue are left out.
QString translationFault(const QString &id);

/// What the plugin calls `id` in the user's language, else in English; `id` where it does not.
QString pluginText(const QString &id);

} // namespace qel::conformance

#endif
