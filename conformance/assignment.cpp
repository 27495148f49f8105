#include "assignment.h"

#include <QtCore/QJsonArray>

namespace qel::conformance {

static const QString keyFile = QStringLiteral("file");
static const QString keyHost = QStringLiteral("host");
static const QString keyDriver = QStringLiteral("driver");
static const QString keySerial = QStringLiteral("serial");
static const QString keyUnsafe = QStringLiteral("unsafe");
static const QString keyAnswers = QStringLiteral("answers");
static const QString keyLimits = QStringLiteral("limits");
static const QString keyRules = QStringLiteral("rules");
static const QString keySoakSeconds = QStringLiteral("soakSeconds");
static const QString keySeed = QStringLiteral("seed");
static const QString keySteps = QStringLiteral("steps");
static const QString keyHung = QStringLiteral("hung");
static const QString keyStuck = QStringLiteral("stuck");
static const QString keyFeature = QStringLiteral("feature");
static const QString keyRule = QStringLiteral("rule");
static const QString keyWhy = QStringLiteral("why");

QJsonObject toJson(const Stuck &stuck)
{
    return {{keyFeature, int(stuck.feature)}, {keyRule, stuck.rule}, {keyWhy, stuck.why}};
}

Stuck stuckFromJson(const QJsonObject &json)
{
    return {devices::Device::DeviceFeature(json.value(keyFeature).toInt()),
            json.value(keyRule).toInt(), json.value(keyWhy).toString()};
}

QJsonObject Assignment::toJson() const
{
    QJsonArray numbers;
    for (const int number : rules)
        numbers += number;
    QJsonArray features;
    for (const Stuck &feature : stuck)
        features += conformance::toJson(feature);
    return {{keyFile, fileName},
            {keyHost, host},
            {keyDriver, driver},
            {keySerial, serial},
            {keyUnsafe, isUnsafe},
            {keyAnswers, int(answers)},
            {keyLimits, limits.toJson()},
            {keyRules, numbers},
            {keySoakSeconds, soakSeconds},
            {keySeed, double(seed)},
            {keySteps, QJsonArray::fromStringList(steps)},
            {keyHung, QJsonArray::fromStringList(hung)},
            {keyStuck, features}};
}

Assignment Assignment::fromJson(const QJsonObject &json)
{
    Assignment assignment;
    assignment.fileName = json.value(keyFile).toString();
    assignment.host = json.value(keyHost).toString();
    assignment.driver = json.value(keyDriver).toString();
    assignment.serial = json.value(keySerial).toString();
    assignment.isUnsafe = json.value(keyUnsafe).toBool();
    assignment.answers = Answers(json.value(keyAnswers).toInt());
    assignment.limits = Limits::fromJson(json.value(keyLimits).toObject());
    const QJsonArray numbers = json.value(keyRules).toArray();
    for (const QJsonValue &number : numbers)
        assignment.rules += number.toInt();
    assignment.soakSeconds = json.value(keySoakSeconds).toInt();
    assignment.seed = quint32(json.value(keySeed).toDouble());
    const QJsonArray steps = json.value(keySteps).toArray();
    for (const QJsonValue &step : steps)
        assignment.steps += step.toString();
    const QJsonArray calls = json.value(keyHung).toArray();
    for (const QJsonValue &call : calls)
        assignment.hung += call.toString();
    const QJsonArray features = json.value(keyStuck).toArray();
    for (const QJsonValue &feature : features)
        assignment.stuck += stuckFromJson(feature.toObject());
    return assignment;
}

} // namespace qel::conformance
