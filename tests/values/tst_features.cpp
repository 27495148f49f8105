#include <qelvalues/features.h>
#include <qelvalues/names.h>
#include <qelvalues/valuetypes.h>

#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QMetaEnum>
#include <QtTest/QTest>

using namespace qel::devices;
using namespace qel::values;

// The table of features, and docs/feature-values.md, which says the same in words.
class FeaturesTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFeatureHasAnEntry();
    void everyTypeCanBeRead();
    void glanceIsDocumented();
    void keysAreDocumented_data();
    void keysAreDocumented();
};

void FeaturesTest::everyFeatureHasAnEntry()
{
    const auto enumeration = QMetaEnum::fromType<Device::DeviceFeature>();
    QCOMPARE(features().size(), enumeration.keyCount());
    for (int i = 0; i < enumeration.keyCount(); ++i)
        QCOMPARE(int(features()[i].feature), enumeration.value(i));
    QVERIFY(!findFeature(static_cast<Device::DeviceFeature>(12)));
}

static bool isKnown(const char *type)
{
    const QString name = QString::fromLatin1(type);
    return typeNamed(name) != QMetaType::UnknownType || name == QLatin1String("QVariantHash")
        || name == QLatin1String("QVariantList");
}

void FeaturesTest::everyTypeCanBeRead()
{
    for (const Feature &feature : features()) {
        for (const Shape &shape :
             {feature.descriptor, feature.configuration, feature.transient, feature.result}) {
            QVERIFY2(!shape.type || isKnown(shape.type), shape.type);
            for (const Key &key : shape.keys)
                QVERIFY2(isKnown(key.type), key.name);
        }
    }
}

static QStringList linesOf(const QString &section)
{
    QFile file(QStringLiteral(DOCUMENT));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(file.readAll());
    const int start = text.indexOf(QStringLiteral("\n## %1\n").arg(section));
    const int end = text.indexOf(QStringLiteral("\n## "), start + 1);
    return start < 0 ? QStringList() : text.mid(start, end - start).split(u'\n');
}

static QString code(const char *text)
{
    return u'`' + QString::fromUtf8(text) + u'`';
}

static QString glance(const Shape &shape)
{
    if (!shape.type)
        return QStringLiteral("none");
    QStringList keys;
    for (const Key &key : shape.keys)
        keys += code(key.name);
    if (!keys.isEmpty())
        return keys.join(QStringLiteral(", "));
    return *shape.unit ? code(shape.type) + QStringLiteral(", ") + QString::fromUtf8(shape.unit)
                       : code(shape.type);
}

void FeaturesTest::glanceIsDocumented()
{
    QStringList expected;
    for (const Feature &feature : features()) {
        const QString name = code(featureName(feature.feature).toLatin1().constData());
        expected += feature.isOffered
            ? QStringLiteral("| %1 |%2 | %3 | %4 | %5 | %6 |")
                  .arg(name, feature.isMoving ? QStringLiteral(" yes") : QString(),
                       glance(feature.descriptor), glance(feature.configuration),
                       glance(feature.transient), glance(feature.result))
            : QStringLiteral("| %1 | | never offered | | | |").arg(name);
    }
    const QStringList documented =
        linesOf(QStringLiteral("All twelve at a glance")).filter(QStringLiteral("| `DF_"));
    QCOMPARE(documented, expected);
}

using GetShape = const Shape &(*)(const Feature &);
Q_DECLARE_METATYPE(GetShape)

void FeaturesTest::keysAreDocumented_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<GetShape>("get");
    const auto row = [](const char *section, GetShape get) {
        QTest::newRow(section) << QString::fromLatin1(section) << get;
    };
    row("Descriptors", [](const Feature &feature) -> const Shape & { return feature.descriptor; });
    row("Configurations",
        [](const Feature &feature) -> const Shape & { return feature.configuration; });
    row("Transient values",
        [](const Feature &feature) -> const Shape & { return feature.transient; });
    row("Results", [](const Feature &feature) -> const Shape & { return feature.result; });
}

void FeaturesTest::keysAreDocumented()
{
    QFETCH(QString, section);
    QFETCH(GetShape, get);
    // From key and type to the units that it has in all features.
    QMap<QString, QStringList> expected;
    for (const Feature &feature : features()) {
        for (const Key &key : get(feature).keys) {
            QStringList &units = expected[code(key.name) + u' ' + code(key.type)];
            const QString unit = QString::fromUtf8(key.unit);
            if (!unit.isEmpty() && !units.contains(unit))
                units += unit;
        }
    }
    QMap<QString, QStringList> documented;
    for (const QString &line : linesOf(section)) {
        const QStringList cells = line.split(QStringLiteral("|"));
        if (cells.size() != 6 || !cells[1].startsWith(QLatin1String(" `")))
            continue;
        const auto names = cells[1].split(u',');
        for (const QString &name : names)
            documented[name.trimmed() + u' ' + cells[2].trimmed()] =
                cells[3].trimmed().split(QStringLiteral(", "), Qt::SkipEmptyParts);
    }
    QCOMPARE(documented.keys(), expected.keys());
    QCOMPARE(documented, expected);
}

QTEST_GUILESS_MAIN(FeaturesTest)
#include "tst_features.moc"
