#include "store.h"

#include "text.h"

#include <qelfrontend/problems.h>
#include <qelfrontend/resultfile.h>
#include <qelvalues/features.h>
#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QRegularExpression>

#include <algorithm>

namespace qelworkbench {

using namespace qel::frontend;
using qel::devices::Device;
using qel::devices::DeviceInfo;

// Not in the namespace below, where the containers of Qt would not find them.
static QDataStream &operator<<(QDataStream &stream, const Entry &entry)
{
    return stream << entry.file << entry.startedAt << entry.instrument << entry.serial
                  << entry.feature << entry.series << entry.number;
}

static QDataStream &operator>>(QDataStream &stream, Entry &entry)
{
    return stream >> entry.file >> entry.startedAt >> entry.instrument >> entry.serial
        >> entry.feature >> entry.series >> entry.number;
}

namespace {

const QString annotationsFile = QStringLiteral("notes.qelworkbench");
const QString cacheFile = QStringLiteral("cache.qelworkbench");
const QString deliveredSuffix = QStringLiteral(".delivered.json"); // of runs without a result
constexpr quint32 cacheMagic = 0x51454c31; // changes with what the cache holds

// Whole or not at all, and on the disk when this returns.
bool writeWhole(const QString &path, const QByteArray &data, ResultFile::Existing existing,
                QString *problem)
{
    QString reason;
    const auto file = ResultFile::open(path, existing, &reason);
    if (file && file->add(data, &reason))
        return true;
    *problem = text("qelworkbench-cannot-write", QDir::toNativeSeparators(path), reason);
    return false;
}

std::optional<QJsonObject> readObject(const QString &path, QString *problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *problem =
            text("qelworkbench-cannot-read", QDir::toNativeSeparators(path), file.errorString());
        return {};
    }
    qel::values::Problem detail;
    const auto json = qel::values::parseJson(file.readAll(), &detail);
    if (json && json->isObject())
        return json->toObject();
    *problem = text("qelworkbench-no-run", QDir::toNativeSeparators(path),
                    json ? QString() : sentence(explain(detail)));
    return {};
}

Entry entryOf(const QString &file, const QJsonObject &document)
{
    const QJsonObject device = document.value(QStringLiteral("device")).toObject();
    const QJsonObject series = document.value(QStringLiteral("series")).toObject();
    Entry entry;
    entry.file = file;
    entry.startedAt = QDateTime::fromString(document.value(QStringLiteral("startedAt")).toString(),
                                            Qt::ISODateWithMs);
    entry.instrument = device.value(QStringLiteral("name")).toString();
    entry.serial = device.value(QStringLiteral("serial")).toString();
    entry.feature = document.value(QStringLiteral("feature")).toString();
    entry.series = series.value(QStringLiteral("id")).toString();
    entry.number = series.value(QStringLiteral("number")).toInt(1);
    return entry;
}

void addNotes(Entry *entry, const QJsonObject &notes)
{
    const QJsonObject own = notes.value(entry->file).toObject();
    entry->name = own.value(QStringLiteral("name")).toString();
    entry->note = own.value(QStringLiteral("note")).toString();
    entry->layout = own.value(QStringLiteral("layout")).toObject();
}

bool isRun(const QJsonObject &document)
{
    return document.value(QStringLiteral("format")).toString() == QLatin1String("qeldevices-run");
}

// Empty when there is none, or one that another version has written.
QHash<QString, Entry> readCache(const QString &path)
{
    QFile file(path);
    quint32 magic = 0;
    QVector<Entry> known;
    QHash<QString, Entry> entries;
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray data = file.readAll();
        QDataStream stream(data);
        stream >> magic;
        if (magic == cacheMagic)
            stream >> known;
        if (stream.status() != QDataStream::Ok)
            known.clear();
    }
    entries.reserve(known.size());
    for (const Entry &entry : qAsConst(known))
        entries.insert(entry.file, entry);
    return entries;
}

void writeCache(const QString &path, const QVector<Entry> &entries)
{
    QByteArray data;
    QDataStream stream(&data, QIODevice::WriteOnly);
    stream << cacheMagic << entries;
    QString ignored; // without a cache the next start is slower, that is all
    writeWhole(path, data, ResultFile::Existing::Replace, &ignored);
}

} // namespace

Store::Store(QString folder)
    : m_folder(std::move(folder))
{ }

QString Store::folder() const
{
    return m_folder;
}

QString Store::path(const QString &file) const
{
    return m_folder + QLatin1Char('/') + file;
}

std::optional<QString> Store::keep(const RunRecord &record, const SeriesMark &mark,
                                   QString *problem)
{
    auto document = record.outcome.isResult() ? runToJson(record, problem) : failureToJson(record);
    if (!document)
        return {};
    if (!mark.id.isEmpty()) {
        document->insert(QStringLiteral("series"),
                         QJsonObject{{QStringLiteral("id"), mark.id},
                                     {QStringLiteral("number"), mark.number},
                                     {QStringLiteral("count"), mark.count}});
    }
    if (!QDir().mkpath(m_folder)) {
        *problem = text("qelworkbench-no-folder", QDir::toNativeSeparators(m_folder));
        return {};
    }
    QString who = record.device.serial().isEmpty() ? record.device.name() : record.device.serial();
    who.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9.-]+")), QStringLiteral("_"));
    const QString stem = QStringLiteral("%1 %2 %3")
                             .arg(record.outcome.startedAt.toLocalTime().toString(
                                      QStringLiteral("yyyy-MM-dd HH.mm.ss")),
                                  who, qel::values::featureArgument(record.feature));
    const QString suffix = record.outcome.isResult() ? QStringLiteral(".json") : deliveredSuffix;
    QString file = stem + suffix;
    for (int copy = 2; QFileInfo::exists(path(file)); ++copy)
        file = QStringLiteral("%1 %2%3").arg(stem, QString::number(copy), suffix);
    if (!writeWhole(path(file), qel::values::jsonText(*document) + '\n',
                    ResultFile::Existing::Refuse, problem))
        return {};
    return file;
}

QVector<Entry> Store::entries() const
{
    const QHash<QString, Entry> known = readCache(path(cacheFile));
    QStringList files =
        QDir(m_folder).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Unsorted);
    files.erase(std::remove_if(files.begin(), files.end(),
                               [](const QString &file) { return file.endsWith(deliveredSuffix); }),
                files.end());
    QVector<Entry> entries;
    entries.reserve(files.size());
    bool isNews = known.size() != files.size();
    for (const QString &file : files) {
        const auto found = known.constFind(file);
        if (found != known.constEnd()) {
            entries.append(*found);
            continue;
        }
        QString ignored;
        const auto document = readObject(path(file), &ignored);
        if (!document || !isRun(*document))
            continue;
        isNews = true;
        entries.append(entryOf(file, *document));
    }
    if (isNews && !entries.isEmpty())
        writeCache(path(cacheFile), entries);

    const QJsonObject notes = annotations();
    for (Entry &entry : entries)
        addNotes(&entry, notes);
    std::sort(entries.begin(), entries.end(), [](const Entry &one, const Entry &other) {
        return std::tie(other.startedAt, other.number) < std::tie(one.startedAt, one.number);
    });
    return entries;
}

std::optional<Entry> Store::entry(const QString &file, QString *problem) const
{
    const auto document = readObject(path(file), problem);
    if (!document)
        return {};
    Entry entry = entryOf(file, *document);
    addNotes(&entry, annotations());
    return entry;
}

std::optional<Result> Store::read(const Entry &entry, QString *problem) const
{
    const auto document = readObject(path(entry.file), problem);
    if (!document)
        return {};
    QString detail;
    auto run = readRunDocument(*document, &detail);
    if (run)
        return Result{entry, std::move(*run)};
    *problem =
        text("qelworkbench-no-run", QDir::toNativeSeparators(path(entry.file)), sentence(detail));
    return {};
}

QJsonObject Store::annotations() const
{
    QString ignored;
    const QString name = path(annotationsFile);
    return QFileInfo::exists(name) ? readObject(name, &ignored).value_or(QJsonObject())
                                   : QJsonObject();
}

bool Store::annotate(const QString &file, const QString &name, const QString &note,
                     QString *problem)
{
    return writeNotes(file, {{QStringLiteral("name"), name}, {QStringLiteral("note"), note}},
                      problem);
}

bool Store::setLayout(const QString &file, const QJsonObject &layout, QString *problem)
{
    return writeNotes(file, {{QStringLiteral("layout"), layout}}, problem);
}

bool Store::writeNotes(const QString &file, const QJsonObject &changed, QString *problem)
{
    // A file that is there and cannot be read is not written over.
    QJsonObject notes;
    if (QFileInfo::exists(path(annotationsFile))) {
        const auto kept = readObject(path(annotationsFile), problem);
        if (!kept)
            return false;
        notes = *kept;
    }
    QJsonObject own = notes.value(file).toObject();
    for (auto one = changed.begin(); one != changed.end(); ++one)
        own.insert(one.key(), one.value());
    notes.insert(file, own);
    return writeWhole(path(annotationsFile), qel::values::jsonText(notes) + '\n',
                      ResultFile::Existing::Replace, problem);
}

} // namespace qelworkbench
