#include "texts.h"

#include "wire.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QLocale>
#include <QtCore/QPointer>

#include <memory>
#include <vector>

namespace qel::rpc {

// A far side that is no friend must not fill the memory.
constexpr int maximumSize = 8 * 1024 * 1024; // characters, of all texts
constexpr int maximumLength = 4096;

FarTexts *FarTexts::instance()
{
    static QPointer<FarTexts> texts;
    if (!texts) {
        texts = new FarTexts(QCoreApplication::instance());
        QCoreApplication::installTranslator(texts);
    }
    return texts;
}

void FarTexts::add(const wire::Text &text)
{
    const QString id = fromWire(text.id()).left(maximumLength);
    if (!m_texts.contains(id) && qtTrId(text.id().c_str()) != id)
        return;
    for (const auto &[language, sentence] : text.sentences()) {
        const QString key = fromWire(language).left(maximumLength);
        const QString value = fromWire(sentence).left(maximumLength);
        if (m_size + id.size() + key.size() + value.size() > maximumSize)
            return;
        m_size += id.size() + key.size() + value.size();
        m_texts[id].insert(key, value);
    }
}

QMap<QString, QString> FarTexts::sentences(const QString &id) const
{
    return m_texts.value(id);
}

QString FarTexts::translate(const char *, const char *sourceText, const char *, int) const
{
    const auto sentences = m_texts.constFind(QString::fromUtf8(sourceText));
    if (sentences == m_texts.constEnd())
        return {};
    const QString locale = QLocale().name();
    const QString language = locale.section(QLatin1Char('_'), 0, 0);
    for (const QString &wanted : {locale, language, QStringLiteral("en")}) {
        const auto sentence = sentences->constFind(wanted);
        if (sentence != sentences->constEnd())
            return *sentence;
    }
    return {};
}

// The application drops a translator that says so.
bool FarTexts::isEmpty() const
{
    return false;
}

namespace {

struct Catalogue
{
    QString language;
    QTranslator translator;
};

} // namespace

// The plugins' catalogues are all there before the first device is driven.
static const std::vector<std::unique_ptr<Catalogue>> &catalogues()
{
    static const auto all = [] {
        std::vector<std::unique_ptr<Catalogue>> found;
        QDirIterator files(QStringLiteral(":/qel/devices"), {QStringLiteral("*.qm")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            auto catalogue = std::make_unique<Catalogue>();
            catalogue->language = files.fileInfo().baseName().section(QLatin1Char('_'), 1);
            if (catalogue->translator.load(file))
                found.push_back(std::move(catalogue));
        }
        return found;
    }();
    return all;
}

wire::Text textFor(const QString &id)
{
    wire::Text text;
    text.set_id(toWire(id));
    const auto known = FarTexts::instance()->sentences(id);
    for (auto it = known.cbegin(); it != known.cend(); ++it)
        (*text.mutable_sentences())[toWire(it.key())] = toWire(it.value());
    const QByteArray source = id.toUtf8();
    for (const auto &catalogue : catalogues()) {
        const QString sentence = catalogue->translator.translate("", source.constData());
        if (!sentence.isEmpty())
            (*text.mutable_sentences())[toWire(catalogue->language)] = toWire(sentence);
    }
    return text;
}

void ToldTexts::complete(wire::Event *event)
{
    const std::string &mentioned = event->has_action() ? event->action().text()
        : event->has_state()                           ? event->state().error().info()
                                                       : event->error().info();
    const QString id = fromWire(mentioned);
    if (id.isEmpty() || m_ids.contains(id) || event->texts_size() > 0)
        return;
    m_ids.insert(id);
    *event->add_texts() = textFor(id);
}

} // namespace qel::rpc
