#ifndef RPC_TEXTS_H
#define RPC_TEXTS_H

#include "instruments.pb.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QTranslator>

namespace qel::rpc {

/// Answers for the translation ids of drivers whose catalogues are elsewhere: what came along with
/// an id is what `qtTrId()` says from then on, in the application's present language.
class FarTexts final : public QTranslator
{
public:
    /// The one of this process, installed in the application, which must exist.
    static FarTexts *instance();

    /// Takes in a text, but none whose id says something here already.
    void add(const wire::Text &text);
    /// By language, "de" for instance; empty for an unknown id.
    QMap<QString, QString> sentences(const QString &id) const;

    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override;
    bool isEmpty() const override;

private:
    using QTranslator::QTranslator;

    QHash<QString, QMap<QString, QString>> m_texts;
    int m_size = 0; // in characters
};

/// What `id` says in every language of the catalogues of the library, of the plugins and of
/// FarTexts.
wire::Text textFor(const QString &id);

/// Knows which ids a peer has been told the sentences of.
class ToldTexts
{
public:
    /// Adds to `event` the sentences of the ids in it, as far as they have not been told yet.
    void complete(wire::Event *event);

private:
    QSet<QString> m_ids;
};

} // namespace qel::rpc

#endif
