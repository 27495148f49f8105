#include <qeldevices/device.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QTimeZone>
#include <QtTest/QTest>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace qel::devices;
using namespace qel::values;

class ValueCodecTest : public QObject
{
    Q_OBJECT

private slots:
    void json_data();
    void json();
    void refusesToWrite_data();
    void refusesToWrite();
    void refusesToRead_data();
    void refusesToRead();
    void refusesKeysNamedTwice_data();
    void refusesKeysNamedTwice();
    void keepsEveryKindOfDouble();
    void limits();
};

// Type and value alike, all the way down; NaN is like NaN, and 0 is not like -0.
static bool isSame(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    const auto sameNumber = [](double x, double y) {
        return (std::isnan(x) && std::isnan(y)) || (x == y && std::signbit(x) == std::signbit(y));
    };
    switch (a.userType()) {
    case QMetaType::Double:
    case QMetaType::Float:
        return sameNumber(a.toDouble(), b.toDouble());
    case QMetaType::QVariantList: {
        const auto x = a.toList();
        const auto y = b.toList();
        return std::equal(x.begin(), x.end(), y.begin(), y.end(), isSame);
    }
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        const auto x = a.value<QVariantHash>();
        const auto y = b.value<QVariantHash>();
        return x.keys().size() == y.keys().size()
            && std::all_of(x.keyBegin(), x.keyEnd(), [&](const QString &key) {
                   return y.contains(key) && isSame(x[key], y[key]);
               });
    }
    case QMetaType::QDateTime:
        return a == b && a.toDateTime().timeSpec() == b.toDateTime().timeSpec()
            && a.toDateTime().offsetFromUtc() == b.toDateTime().offsetFromUtc();
    default:
        break;
    }
    if (a.userType() == qMetaTypeId<QVector<double>>()) {
        const auto x = a.value<QVector<double>>();
        const auto y = b.value<QVector<double>>();
        return std::equal(x.begin(), x.end(), y.begin(), y.end(), sameNumber);
    }
    if (a.userType() == qMetaTypeId<LedBarEffect_config::Color>()) {
        const auto x = a.value<LedBarEffect_config::Color>();
        const auto y = b.value<LedBarEffect_config::Color>();
        return x.red == y.red && x.green == y.green && x.blue == y.blue;
    }
    if (a.userType() == qMetaTypeId<LedBarEffect_config::Modes>())
        return a.value<LedBarEffect_config::Modes>() == b.value<LedBarEffect_config::Modes>();
    if (a.userType() == qMetaTypeId<std::chrono::milliseconds>())
        return a.value<std::chrono::milliseconds>() == b.value<std::chrono::milliseconds>();
    if (a.userType() == qMetaTypeId<QList<int>>())
        return a.value<QList<int>>() == b.value<QList<int>>();
    if (a.userType() == qMetaTypeId<QVector<bool>>())
        return a.value<QVector<bool>>() == b.value<QVector<bool>>();
    return a == b;
}

template<typename T>
static QVariant of(const T &value)
{
    return QVariant::fromValue(value);
}

void ValueCodecTest::json_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *text, const QVariant &value) {
        QTest::newRow(text) << value << QByteArray(text);
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();

    row("null", QVariant());
    row("true", true);
    row("1", 1.0);
    row("0.1", 0.1);
    row("\"\303\244\"", QStringLiteral("ä"));
    row("[]", QVariantList());
    row("{}", QVariantHash());
    row(R"([1,[2],{"a":null}])",
        QVariantList{1.0, QVariant(QVariantList{2.0}),
                     QVariantHash{{QStringLiteral("a"), QVariant()}}});
    row(R"({"$type":"double","value":null})", std::nan(""));
    row(R"({"$type":"double","value":"-inf"})", -infinity);
    row(R"({"$type":"double","value":"-0"})", -0.0);
    row(R"({"$type":"int","value":-2147483648})", std::numeric_limits<int>::min());
    row(R"({"$type":"uint","value":4294967295})", std::numeric_limits<uint>::max());
    row(R"({"$type":"uchar","value":255})", of(uchar(255)));
    row(R"({"$type":"float","value":0.5})", 0.5f);
    row(R"({"$type":"float","value":"inf"})", std::numeric_limits<float>::infinity());
    row(R"({"$type":"qlonglong","value":9007199254740991})", Q_INT64_C(9007199254740991));
    row(R"({"$type":"qlonglong","value":"9007199254740992"})", Q_INT64_C(9007199254740992));
    row(R"({"$type":"qlonglong","value":"-9223372036854775808"})",
        std::numeric_limits<qint64>::min());
    row(R"({"$type":"qulonglong","value":"18446744073709551615"})",
        std::numeric_limits<quint64>::max());
    row(R"({"$type":"std::chrono::milliseconds","value":1500})",
        of(std::chrono::milliseconds(1500)));
    row(R"({"$type":"std::chrono::milliseconds","value":"-9223372036854775807"})",
        of(std::chrono::milliseconds(-std::numeric_limits<qint64>::max())));
    row(R"({"$type":"QStringList","value":["a",""]})", QStringList{QStringLiteral("a"), QString()});
    row(R"({"$type":"QList<int>","value":[450,-1]})", of(QList<int>{450, -1}));
    row(R"({"$type":"QVector<bool>","value":[true,false]})", of(QVector<bool>{true, false}));
    row(R"({"$type":"QVector<double>","value":[1,null,"inf"]})",
        of(QVector<double>{1, std::nan(""), infinity}));
    row(R"({"$type":"QByteArray","value":"AP8="})", QByteArray("\0\xff", 2));
    row(R"({"$type":"QByteArray","value":""})", QByteArray());
    row(R"({"$type":"QDate","value":"2024-02-29"})", QDate(2024, 2, 29));
    row(R"({"$type":"QDate","value":null})", QDate());
    row(R"({"$type":"QDateTime","value":"2024-02-29T23:59:59.999Z"})",
        QDateTime({2024, 2, 29}, {23, 59, 59, 999}, Qt::UTC));
    row(R"({"$type":"QDateTime","value":"2024-02-29T12:00:00.000-03:30"})",
        QDateTime({2024, 2, 29}, {12, 0}, Qt::OffsetFromUTC, -12600));
    row(R"({"$type":"QDateTime","value":"2024-02-29T12:00:00.000"})",
        QDateTime({2024, 2, 29}, {12, 0}));
    row(R"({"$type":"qel::devices::LedBarEffect_Effect","value":"Rainbow"})",
        of(LedBarEffect_Effect::Rainbow));
    row(R"({"$type":"qel::devices::LedBarEffect_Effect","value":200})",
        of(static_cast<LedBarEffect_Effect>(200)));
    row(R"({"$type":"qel::devices::SlotStatus","value":"Unknown"})", of(SlotStatus::Unknown));
    row(R"({"$type":"qel::devices::Orientation_result::Side","value":"Right"})",
        of(Orientation_result::Side::Right));
    row(R"({"$type":"qel::devices::Orientation_result::Side","value":-7})",
        of(static_cast<Orientation_result::Side>(-7)));
    row(R"({"$type":"qel::devices::LedBarEffect_config::Color","value":"#0a00ff"})",
        of(LedBarEffect_config::Color{10, 0, 255}));
    row(R"({"$type":"qel::devices::LedBarEffect_config::Modes","value":6})",
        of(LedBarEffect_config::Mirrored | LedBarEffect_config::Once));
    row(R"({"$type":"QVariantMap","value":{"$type":"int"}})",
        QVariantMap{{QStringLiteral("$type"), QStringLiteral("int")}});
    row(R"({"$type":"QVariantHash","value":{"$type":"int","value":1}})",
        QVariantHash{{QStringLiteral("$type"), QStringLiteral("int")},
                     {QStringLiteral("value"), 1.0}});
    row(R"({"values":[{"$type":"QVector<double>","value":[0.25,null]}]})",
        QVariantHash{
            {QStringLiteral("values"), QVariantList{of(QVector<double>{0.25, std::nan("")})}}});
}

void ValueCodecTest::json()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, text);
    Problem problem;
    const auto json = toJson(value, &problem);
    QVERIFY2(json, qPrintable(toString(problem)));
    QCOMPARE(jsonText(*json), text);
    const auto parsed = parseJson(text, &problem);
    QVERIFY2(parsed, qPrintable(toString(problem)));
    const auto read = fromJson(*parsed, &problem);
    QVERIFY2(read, qPrintable(toString(problem)));
    QVERIFY2(isSame(*read, value), read->typeName());
}

void ValueCodecTest::refusesToWrite_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("place");
    const QString half(QChar(0xd800));
    QTest::newRow("unknown type") << QVariant(
        QVariantHash{{QStringLiteral("a"), QVariantList{1, of(QSizeF())}}})
                                  << QStringLiteral("$.a[1]");
    QTest::newRow("half a character") << QVariant(half) << QStringLiteral("$");
    QTest::newRow("half a character in a key")
        << QVariant(QVariantHash{{half, 1}}) << QStringLiteral("$");
    QTest::newRow("half a character in a list")
        << QVariant(QVariantList{QStringList{half}}) << QStringLiteral("$[0]");
    QTest::newRow("named time zone")
        << QVariant(QDateTime({2024, 2, 29}, {12, 0}, QTimeZone("Europe/Berlin")))
        << QStringLiteral("$");
    QTest::newRow("far future") << QVariant(QDate(10000, 1, 1)) << QStringLiteral("$");
}

void ValueCodecTest::refusesToWrite()
{
    QFETCH(QVariant, value);
    QFETCH(QString, place);
    Problem problem;
    QVERIFY(!toJson(value, &problem));
    QCOMPARE(problem.path, place);
}

void ValueCodecTest::refusesToRead_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("place");
    const auto row = [](const char *text, const char *place) {
        QTest::newRow(text) << QByteArray(text) << QString::fromLatin1(place);
    };
    row(R"({"a":[0,{"$type":"QObject*","value":0}]})", "$.a[1]");
    row(R"({"$type":"QWidget","value":1})", "$");
    row(R"({"$type":"int"})", "$");
    row(R"({"$type":"int","value":1,"more":2})", "$");
    row(R"({"$type":7,"value":1})", "$");
    row(R"({"$type":"int","value":1.5})", "$");
    row(R"({"$type":"int","value":2147483648})", "$");
    row(R"({"$type":"int","value":"1"})", "$");
    row(R"({"$type":"uint","value":-1})", "$");
    row(R"({"$type":"uchar","value":256})", "$");
    row(R"({"$type":"float","value":1e300})", "$");
    row(R"({"$type":"float","value":"NaN"})", "$");
    row(R"({"$type":"qlonglong","value":1e19})", "$");
    row(R"({"$type":"qlonglong","value":9007199254740993})", "$");
    row(R"({"$type":"qlonglong","value":"500"})", "$");
    row(R"({"$type":"bool","value":true})", "$");
    row(R"({"$type":"qlonglong","value":"9223372036854775808"})", "$");
    row(R"({"$type":"qulonglong","value":"-1"})", "$");
    row(R"({"$type":"qlonglong","value":" 1"})", "$");
    row(R"({"$type":"QList<int>","value":{"0":1}})", "$");
    row(R"({"$type":"QList<int>","value":[1,null]})", "$");
    row(R"({"$type":"QVector<bool>","value":[1]})", "$");
    row(R"({"$type":"QVector<double>","value":[[]]})", "$");
    row(R"({"$type":"QStringList","value":["\ud800"]})", "$");
    row(R"({"$type":"QByteArray","value":"A*=="})", "$");
    row(R"({"$type":"QByteArray","value":17})", "$");
    row(R"({"$type":"QDate","value":"2023-02-29"})", "$");
    row(R"({"$type":"QDateTime","value":"yesterday"})", "$");
    row(R"({"$type":"qel::devices::SlotStatus","value":"SlotStatus::Empty"})", "$");
    row(R"({"$type":"qel::devices::LedBarEffect_Effect","value":256})", "$");
    row(R"({"$type":"qel::devices::LedBarEffect_config::Color","value":"#12345g"})", "$");
    row(R"({"$type":"qel::devices::LedBarEffect_config::Color","value":"123456"})", "$");
    row(R"({"$type":"qel::devices::LedBarEffect_config::Color","value":"#12345"})", "$");
    row(R"({"$type":"QVariantHash","value":[]})", "$");
    row(R"([1,"\udc00x"])", "$[1]");
    row(R"({"a":{"\ud800":1}})", "$.a");
    // No JSON at all.
    row("", "");
    row("[1", "");
    row("1,2", "");
    row("1],[2", "");
    row("nan", "");
    row("{\"a\":1}}", "");
}

void ValueCodecTest::refusesToRead()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, place);
    Problem problem;
    const auto json = parseJson(text, &problem);
    QCOMPARE(bool(json), !place.isEmpty());
    if (json)
        QVERIFY(!fromJson(*json, &problem));
    QCOMPARE(problem.path, place);
    QVERIFY2(!toString(problem).contains(u'%'), qPrintable(toString(problem)));
}

void ValueCodecTest::refusesKeysNamedTwice_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("place");
    const auto row = [](const char *text, const char *place) {
        QTest::newRow(text) << QByteArray(text) << QString::fromLatin1(place);
    };
    row(R"({"a":1,"a":1})", "$");
    row(R"({"a":1, "\u0061" : 2})", "$");
    row(R"({"\"":1,"\"":2})", "$");
    row(R"([{"a":1},{"b":[0,{"a":[],"c":{},"a":0}]}])", "$[1].b[1]");
    row(R"({"a":{"a":1},"b":"a","c":["a","a"],"}{,:":"\",\"a\":"})", "");
    row(R"("a")", "");
}

void ValueCodecTest::refusesKeysNamedTwice()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, place);
    Problem problem{Problem::JsonDuplicateKey, {}, {}};
    QCOMPARE(bool(parseJson(text, &problem)), place.isEmpty());
    QCOMPARE(problem.code, Problem::JsonDuplicateKey);
    QCOMPARE(problem.path, place);
}

void ValueCodecTest::keepsEveryKindOfDouble()
{
    QVector<double> values{0.1,  1e15,    1e16,  9007199254740993.0, 1e18, 9.3e18,
                           1e22, 1.7e308, 5e-324};
    for (int exponent = -1074; exponent < 1024; exponent += 7)
        values += {std::ldexp(1, exponent), -std::ldexp(1.1, exponent)};
    Problem problem;
    const auto parsed = parseJson(jsonText(*toJson(of(values), &problem)), &problem);
    QVERIFY(parsed);
    const auto read = fromJson(*parsed, &problem);
    QVERIFY2(read, qPrintable(toString(problem)));
    QCOMPARE(read->value<QVector<double>>(), values);
}

void ValueCodecTest::limits()
{
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    Problem problem;
    QVERIFY(fromJson(*parseJson(nested(maximumValueDepth + 1), &problem), &problem));
    QVERIFY(!fromJson(*parseJson(nested(maximumValueDepth + 2), &problem), &problem));
    QVERIFY(!parseJson(nested(100000), &problem));
    QVERIFY(!parseJson(QByteArray(maximumJsonSize + 1, ' '), &problem));

    QVariant deep;
    for (int i = 0; i <= maximumValueDepth; ++i)
        deep = QVariant(QVariantList{deep});
    QVERIFY(!toJson(deep, &problem));

    QVector<double> many(maximumValueCount - 1);
    const auto json = toJson(of(many), &problem);
    QVERIFY2(json, qPrintable(toString(problem)));
    QVERIFY(fromJson(*json, &problem));
    many.append(0);
    QVERIFY(!toJson(of(many), &problem));
    QJsonArray array = json->toObject().value(QStringLiteral("value")).toArray();
    array.append(0);
    QVERIFY(!fromJson(QJsonObject{{QStringLiteral("$type"), QStringLiteral("QVector<double>")},
                                  {QStringLiteral("value"), array}},
                      &problem));
}

QTEST_GUILESS_MAIN(ValueCodecTest)
#include "tst_valuecodec.moc"
