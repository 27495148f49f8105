#include "store.h"

#include "text.h"

#include <qelfrontend/problems.h>
#include <qelvalues/features.h>
#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QMetaEnum>
#include <QtCore/QRegularExpression>
#include <QtCore/QSaveFile>

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
constexpr quint32 cacheMagic = 0x51454c31; // changes with what the cache holds

bool writeWhole(const QString &path, const QByteArray &data, QString *problem)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit())
        return true;
    *problem =
        text("qelworkbench-cannot-write", QDir::toNativeSeparators(path), file.errorString());
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
    writeWhole(path, data, &ignored);
}

DeviceInfo::Interface interfaceNamed(const QString &name)
{
    for (int value = 0; value < 16; ++value) {
        if (qel::values::interfaceName(DeviceInfo::Interface(value)) == name)
            return DeviceInfo::Interface(value);
    }
    return DeviceInfo::Interface();
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
    auto document = runToJson(record, problem);
    if (!document)
        return {};
    if (!mark.id.isEmpty()) {
        document->insert(QStringLiteral("series"),
                         QJsonObject{{QStringLiteral("id"), mark.id},
                                     {QStringLiteral("number"), mark.number},
                                     {QStringLiteral("count"), mark.count}});
    }
    const QVariant maximum = record.descriptor.toHash().value(QStringLiteral("maximum"));
    if (qel::values::isMeasurement(record.feature) && maximum.userType() == QMetaType::Double)
        document->insert(QStringLiteral("maximum"), maximum.toDouble());
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
    QString file = stem + QStringLiteral(".json");
    for (int copy = 2; QFileInfo::exists(path(file)); ++copy)
        file = QStringLiteral("%1 %2.json").arg(stem).arg(copy);
    if (!writeWhole(path(file), qel::values::jsonText(*document) + '\n', problem))
        return {};
    return file;
}

QVector<Entry> Store::entries() const
{
    const QHash<QString, Entry> known = readCache(path(cacheFile));
    const QStringList files =
        QDir(m_folder).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Unsorted);
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
    Result result;
    result.entry = entry;
    result.document = *document;
    const QJsonObject device = document->value(QStringLiteral("device")).toObject();
    const auto part = [&device](const char *key) {
        return device.value(QLatin1String(key)).toString();
    };
    result.device = DeviceInfo(interfaceNamed(part("interface")), part("driver"), part("location"),
                               part("name"), part("serial"));
    bool isKnown = false;
    const QByteArray feature = document->value(QStringLiteral("feature")).toString().toUtf8();
    result.feature = Device::DeviceFeature(
        QMetaEnum::fromType<Device::DeviceFeature>().keyToValue(feature.constData(), &isKnown));
    QString detail;
    qel::values::Problem mistake;
    const auto value = qel::values::fromJson(document->value(QStringLiteral("result")), &mistake);
    if (!value)
        detail = explain(mistake);
    if (isRun(*document) && isKnown && value) {
        result.value = *value;
        if (document->contains(QStringLiteral("maximum")))
            result.maximum = document->value(QStringLiteral("maximum")).toDouble();
        if (!qel::values::isMeasurement(result.feature))
            return result;
        result.plate = plateFromResult(result.feature, *value, &detail);
        if (result.plate)
            return result;
    }
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
    return writeWhole(path(annotationsFile), qel::values::jsonText(notes) + '\n', problem);
}

} // namespace qelworkbench
