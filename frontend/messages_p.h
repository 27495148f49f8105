#ifndef FRONTEND_MESSAGES_P_H
#define FRONTEND_MESSAGES_P_H

#include <QtCore/QString>

namespace qel::frontend {

/// The sentence `id` in the language of the installed catalogue, in English where none is
/// installed.
QString message(const char *id);

/// As above, with the texts `arguments` in the places %1, %2 and so on.
template<typename... Texts>
QString message(const char *id, const Texts &...arguments)
{
    return message(id).arg(arguments...);
}

/// Makes a text from outside fit for a sentence: printable(), and not longer than `longest`
/// characters.
QString excerpt(const QString &text, int longest = 80);

} // namespace qel::frontend

#endif
