#include "scenario.h"

#include "jsonobjectreader.h"
#include "optics.h"

#include <qelvalues/names.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QMetaEnum>
#include <QtCore/QSet>

#include <utility>

namespace qel::simulator {

using qel::devices::Device;
using qel::devices::DeviceInfo;

DeviceInfo InstrumentDescription::info(const QString &driver) const
{
    return DeviceInfo(DeviceInfo::Simulator, driver, location, name, serial);
}

static const Names<Device::DeviceFeature> &featureNames()
{
    static const auto names = [] {
        const auto features = QMetaEnum::fromType<Device::DeviceFeature>();
        Names<Device::DeviceFeature> all{{QStringLiteral("any"), Device::DF_None}};
        for (int i = 0; i < features.keyCount(); ++i) {
            const auto feature = Device::DeviceFeature(features.value(i));
            if (feature != Device::DF_None)
                all.append({values::featureArgument(feature), feature});
        }
        return all;
    }();
    return names;
}

struct ActionRule
{
    QString name;
    Fault::Action action;
    QVector<Fault::Moment> moments; // where it makes sense
};

static const QVector<ActionRule> &actionRules()
{
    using A = Fault::Action;
    using M = Fault::Moment;
    static const QVector<ActionRule> rules{
        {QStringLiteral("refuse"), A::Refuse, {M::Open, M::Execute}},
        {QStringLiteral("error"), A::Error, {M::Open, M::Execute, M::Time}},
        {QStringLiteral("delay"), A::Delay, {M::Open, M::Execute, M::Enumerate}},
        {QStringLiteral("stall"), A::Stall, {M::Open, M::Execute}},
        {QStringLiteral("drop-ending"), A::DropEnding, {M::Execute}},
        {QStringLiteral("double-ending"), A::DoubleEnding, {M::Execute}},
        {QStringLiteral("partial-data"), A::PartialData, {M::Execute}},
        {QStringLiteral("wrong-type"), A::WrongType, {M::Execute}},
        {QStringLiteral("ask"), A::Ask, {M::Open, M::Execute}},
        {QStringLiteral("unplug"), A::Unplug, {M::Open, M::Execute, M::Enumerate, M::Time}},
        {QStringLiteral("insert-plate"), A::InsertPlate, {M::Time}},
        {QStringLiteral("remove-plate"), A::RemovePlate, {M::Time}},
    };
    return rules;
}

static const Names<Fault::Moment> &momentNames()
{
    static const Names<Fault::Moment> names{
        {QStringLiteral("open"), Fault::Moment::Open},
        {QStringLiteral("execute"), Fault::Moment::Execute},
        {QStringLiteral("enumerate"), Fault::Moment::Enumerate},
        {QStringLiteral("time"), Fault::Moment::Time},
    };
    return names;
}

static const Names<SimulatedPlate::Layout> &layoutNames()
{
    static const Names<SimulatedPlate::Layout> names{
        {QStringLiteral("dilution-series"), SimulatedPlate::Layout::DilutionSeries},
        {QStringLiteral("elisa"), SimulatedPlate::Layout::Elisa},
        {QStringLiteral("edge-effect"), SimulatedPlate::Layout::EdgeEffect},
        {QStringLiteral("empty"), SimulatedPlate::Layout::Empty},
    };
    return names;
}

static void readOccurrence(JsonObjectReader &reader, Fault &fault)
{
    if (fault.moment == Fault::Moment::Execute) {
        fault.feature = reader.choice(QStringLiteral("feature"), featureNames(), Device::DF_None);
    } else {
        reader.refuse(QStringLiteral("feature"),
                      QStringLiteral("it belongs to \"at\": \"execute\""));
    }
    if (fault.moment == Fault::Moment::Time) {
        fault.after = int(reader.integer(QStringLiteral("after"), 0, 0, 86400000));
        reader.refuse(QStringLiteral("nth"), QStringLiteral("a time comes once"));
        reader.refuse(QStringLiteral("probability"), QStringLiteral("a time comes once"));
    } else {
        reader.refuse(QStringLiteral("after"), QStringLiteral("it belongs to \"at\": \"time\""));
        fault.nth = int(reader.integer(QStringLiteral("nth"), 0, 1, 1000000));
        fault.probability = reader.number(QStringLiteral("probability"), 1, 0, 1);
    }
}

static void readParameters(JsonObjectReader &reader, Fault &fault)
{
    const auto only = [&](Fault::Action action, const char *key) {
        if (fault.action == action)
            return true;
        reader.refuse(QString::fromLatin1(key), QStringLiteral("\"do\" has no use for it"));
        return false;
    };
    if (only(Fault::Action::Delay, "delay"))
        fault.delay = int(reader.integer(QStringLiteral("delay"), 1000, 0, 3600000));
    if (only(Fault::Action::Error, "code"))
        fault.code = reader.choice(QStringLiteral("code"), values::errorNames(), fault.code);
    if (only(Fault::Action::Error, "info"))
        fault.info = reader.text(QStringLiteral("info"), QStringLiteral("qelsimulator-scripted"));
    if (only(Fault::Action::Ask, "text")) {
        fault.text =
            reader.text(QStringLiteral("text"), QStringLiteral("qelsimulator-action-check-plate"));
    }
    if (only(Fault::Action::Unplug, "absentFor"))
        fault.absentFor = int(reader.integer(QStringLiteral("absentFor"), 0, 1, 1000000));
}

static Fault readFault(const QJsonObject &object, const QString &path, QStringList *mistakes)
{
    JsonObjectReader reader(object, path, mistakes);
    Fault fault;
    fault.moment = reader.choice(QStringLiteral("at"), momentNames());

    Names<Fault::Action> actions;
    for (const ActionRule &rule : actionRules()) {
        if (rule.moments.contains(fault.moment))
            actions.append({rule.name, rule.action});
    }
    fault.action = reader.choice(QStringLiteral("do"), actions);
    readOccurrence(reader, fault);
    readParameters(reader, fault);
    reader.finish();
    return fault;
}

static SimulatedPlate readPlate(const QJsonObject &object, const QString &path,
                                const PlateFormat &format, QStringList *mistakes)
{
    JsonObjectReader reader(object, path, mistakes);
    SimulatedPlate plate;
    plate.layout = reader.choice(QStringLiteral("layout"), layoutNames());
    Names<QString> dyes;
    const QStringList names = dyeNames();
    for (const QString &name : names)
        dyes.append({name, name});
    plate.dye = reader.choice(QStringLiteral("dye"), dyes, plate.dye);
    plate.concentration =
        1e-6 * reader.number(QStringLiteral("concentration"), plate.concentration * 1e6, 0, 1e6);
    plate.volume = reader.number(QStringLiteral("volume"), format.wellVolume, 0, 5000);
    plate.brightness = reader.number(QStringLiteral("brightness"), plate.brightness, 0, 1e12);
    reader.finish();
    return plate;
}

static void readFormat(JsonObjectReader &reader, PlateFormat *format)
{
    const QString key = QStringLiteral("wells");
    const auto wells = reader.integer(key, format->wells(), 1, 1536);
    QStringList known;
    for (const PlateFormat &candidate : plateFormats()) {
        known.append(QString::number(candidate.wells()));
        if (candidate.wells() == wells) {
            *format = candidate;
            return;
        }
    }
    reader.complain(key, QStringLiteral("one of %1").arg(known.join(QStringLiteral(", "))));
}

static void readSlot(JsonObjectReader &reader, InstrumentDescription &instrument,
                     QStringList *mistakes)
{
    const QString key = QStringLiteral("plate");
    if (instrument.model.format.wells() == 0) {
        const QString reason = QStringLiteral("%1 takes no plate").arg(instrument.model.id);
        reader.refuse(QStringLiteral("wells"), reason);
        reader.refuse(key, reason);
        return;
    }
    readFormat(reader, &instrument.model.format);
    if (reader.isNull(key))
        return;
    instrument.plate = SimulatedPlate();
    instrument.plate->volume = instrument.model.format.wellVolume;
    if (const auto object = reader.object(key))
        instrument.plate =
            readPlate(object->first, object->second, instrument.model.format, mistakes);
}

static InstrumentDescription readInstrument(const QJsonObject &object, const QString &path,
                                            int number, double timeScale, QStringList *mistakes)
{
    JsonObjectReader reader(object, path, mistakes);
    InstrumentDescription instrument;
    Names<Model> known;
    for (const Model &model : models())
        known.append({model.id, model});
    instrument.model = reader.choice(QStringLiteral("model"), known);
    instrument.name = reader.text(QStringLiteral("name"), instrument.model.name);
    instrument.serial = reader.text(QStringLiteral("serial"),
                                    QStringLiteral("SIM-%1").arg(number, 4, 10, QLatin1Char('0')));
    instrument.location =
        reader.text(QStringLiteral("location"), QStringLiteral("bench-%1").arg(number));
    readSlot(reader, instrument, mistakes);
    instrument.seed = quint64(reader.integer(QStringLiteral("seed"), 1, 0, Q_INT64_C(1) << 53));
    instrument.timeScale = reader.number(QStringLiteral("timeScale"), timeScale, 0, 100);
    instrument.calibrated = reader.boolean(QStringLiteral("calibrated"), true);
    instrument.apiVersion = int(reader.integer(QStringLiteral("apiVersion"), 1, 1, 100));
    const auto faults = reader.objects(QStringLiteral("faults"));
    for (const auto &[fault, faultPath] : faults)
        instrument.faults.append(readFault(fault, faultPath, mistakes));
    reader.finish();

    QJsonObject source = object;
    source[QStringLiteral("serial")] = instrument.serial;
    source[QStringLiteral("location")] = instrument.location;
    source[QStringLiteral("timeScale")] = instrument.timeScale;
    instrument.source = QJsonDocument(source).toJson(QJsonDocument::Compact);
    return instrument;
}

// An application tells instruments apart by these.
static void checkUnique(const InstrumentDescription &instrument, const QString &path,
                        QSet<QString> *locations, QSet<QString> *serials, QStringList *mistakes)
{
    const QString message = QStringLiteral("%1.%2: expected a %2 of its own, found \"%3\" again");
    if (locations->contains(instrument.location))
        mistakes->append(message.arg(path, QStringLiteral("location"), instrument.location));
    if (serials->contains(instrument.serial))
        mistakes->append(message.arg(path, QStringLiteral("serial"), instrument.serial));
    locations->insert(instrument.location);
    serials->insert(instrument.serial);
}

static QString syntaxMistake(const QByteArray &json, const QJsonParseError &error)
{
    const QByteArray before = json.left(error.offset);
    return QStringLiteral("line %1, column %2: expected JSON, found: %3")
        .arg(before.count('\n') + 1)
        .arg(before.size() - before.lastIndexOf('\n'))
        .arg(error.errorString());
}

Scenario parseScenario(const QByteArray &json)
{
    Scenario scenario;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        scenario.mistakes.append(syntaxMistake(json, error));
        return scenario;
    }
    if (!document.isObject()) {
        scenario.mistakes.append(QStringLiteral("line 1: expected an object, found an array"));
        return scenario;
    }

    JsonObjectReader reader(document.object(), QString(), &scenario.mistakes);
    reader.text(QStringLiteral("$schema"), QString());
    const double timeScale = reader.number(QStringLiteral("timeScale"), 1, 0, 100);
    if (!reader.has(QStringLiteral("instruments")))
        reader.complain(QStringLiteral("instruments"), QStringLiteral("an array of objects"));
    QSet<QString> locations;
    QSet<QString> serials;
    const auto objects = reader.objects(QStringLiteral("instruments"));
    for (const auto &[object, path] : objects) {
        const int number = scenario.instruments.size() + 1;
        scenario.instruments.append(
            readInstrument(object, path, number, timeScale, &scenario.mistakes));
        checkUnique(scenario.instruments.constLast(), path, &locations, &serials,
                    &scenario.mistakes);
    }
    reader.finish();

    if (!scenario.mistakes.isEmpty())
        scenario.instruments.clear();
    return scenario;
}

QByteArray builtInScenario()
{
    return R"json({
    "instruments": [
        {
            "model": "absorbance-96",
            "serial": "SIM-A-0001",
            "location": "bench-1",
            "plate": {"layout": "dilution-series", "dye": "tmb"},
            "seed": 1
        },
        {
            "model": "luminescence-96",
            "serial": "SIM-L-0001",
            "location": "bench-2",
            "plate": {"layout": "dilution-series"},
            "seed": 2
        }
    ]
})json";
}

} // namespace qel::simulator
