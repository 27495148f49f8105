#include "sentence.h"

namespace qel::inspection {

Sentence::Sentence(const char *id, const QVector<Sentence> &places)
    : pattern(QString::fromUtf8(id))
    , parts(places)
    , isTranslated(true)
{ }

Sentence::Sentence(const QString &name)
    : pattern(name)
{ }

QString Sentence::english() const
{
    return in([](const char *id) { return QString::fromUtf8(id); });
}

QString Sentence::in(const Translate &translate) const
{
    if (!isTranslated)
        return pattern;
    const QString text = translate(pattern.toUtf8().constData());
    // Not with arg(): a file may be called "%2".
    QString filled;
    for (int i = 0; i < text.size(); ++i) {
        const int part = text.at(i) == QLatin1Char('%') && i + 1 < text.size()
            ? text.at(i + 1).digitValue() - 1
            : -1;
        if (part < 0 || part >= parts.size()) {
            filled += text.at(i);
            continue;
        }
        filled += parts.at(part).in(translate);
        ++i;
    }
    return filled;
}

} // namespace qel::inspection
