#ifndef QELFRONTEND_FRONTEND_H
#define QELFRONTEND_FRONTEND_H

#include "export.h"

#include <QtCore/QLocale>
#include <QtCore/QString>

/// What all front ends share: runs, feature values as JSON, configurations, plates as text.
///
/// Qt Core only, no user interface. Failures are values with a sentence for the user, in the
/// language of installTranslations().
namespace qel::frontend {

/// Registers the feature type and the payload types of the library with the meta-type system, so
/// that they travel through queued connections and are found by name. Repeating it does nothing.
QELFRONTEND_EXPORT void registerMetaTypes();

/// Installs the catalogue for `locale` in the application, in place of the one installed before.
/// English holds where there is no catalogue for `locale`, and before the first call.
QELFRONTEND_EXPORT void installTranslations(const QLocale &locale = QLocale());

/// What `id`, a translation id that a driver or the library has handed out, says in the user's
/// language; in English where there is no catalogue for that; `id` itself where no catalogue holds
/// it.
QELFRONTEND_EXPORT QString translated(const QString &id);

/// `text`, which comes from outside, as one line that a terminal shows and does not act on: what is
/// no visible character, line ends and changes of the writing direction included, becomes U+FFFD.
QELFRONTEND_EXPORT QString printable(const QString &text);

} // namespace qel::frontend

#endif
