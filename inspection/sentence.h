#ifndef QEL_INSPECTION_SENTENCE_H
#define QEL_INSPECTION_SENTENCE_H

#include <QtCore/QString>
#include <QtCore/QVector>

#include <functional>

namespace qel::inspection {

/// A sentence for people, or a part of one: English, and ready to be said in another language.
struct Sentence
{
    /// The id of a translation in, its text out; the id itself where there is none.
    using Translate = std::function<QString(const char *)>;

    Sentence() = default;
    /// `id`, the English text, holds %1, %2 and so on for `places`.
    Sentence(const char *id, const QVector<Sentence> &places = {});
    /// A name, a path, a number: the same in every language.
    Sentence(const QString &name);

    QString english() const;
    QString in(const Translate &translate) const;

    QString pattern;
    QVector<Sentence> parts;
    bool isTranslated = false; ///< whether the pattern is an id
};

} // namespace qel::inspection

#endif
