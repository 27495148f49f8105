#include "device.h"

#include "deviceerrors.h"
#include "deviceerrors_p.h"
#include "logging.h"

#include <utility>

namespace qel::devices {

int Device::NEXT_ACTION_ID = 0;

// Empty for a value that is not an enumerator.
static QByteArray featureName(Device::DeviceFeature feature)
{
    return QVariant::fromValue(feature).toString().toLocal8Bit();
}

Device::Device(const DeviceInfo &info, QObject *parent)
    : QObject(parent)
    , m_deviceInfo(info)
{ }

Device::~Device() = default;

QString Device::name() const
{
    return m_deviceInfo.m_name;
}

QString Device::serial() const
{
    return m_deviceInfo.m_serial;
}

QString Device::location() const
{
    return m_deviceInfo.m_location;
}

QString Device::driver() const
{
    return m_deviceInfo.m_driver;
}

DeviceInfo Device::deviceInfo() const
{
    return m_deviceInfo;
}

bool Device::isOpen() const
{
    return m_open;
}

bool Device::isBusy() const
{
    return m_busy;
}

void Device::setName(const QString &name)
{
    if (name == m_deviceInfo.m_name)
        return;
    m_deviceInfo.m_name = name;
    emit nameChanged();
}

void Device::setSerial(const QString &serial)
{
    if (serial == m_deviceInfo.m_serial)
        return;
    m_deviceInfo.m_serial = serial;
    emit serialChanged();
}

void Device::setOpen(bool open)
{
    if (open == m_open)
        return;
    m_open = open;
    emit openChanged(open);
}

void Device::setBusy(bool busy)
{
    if (busy == m_busy)
        return;
    m_busy = busy;
    emit busyChanged(busy);
}

void Device::setStatus(QFlags<StatusFlag> status)
{
    setOpen(status.testFlag(SF_Open));
    setBusy(status.testFlag(SF_Busy));
}

bool Device::hasFeature(DeviceFeature feature) const
{
    const auto entry = m_features.constFind(feature);
    return entry != m_features.constEnd() && entry->available;
}

QVariant Device::descriptor(DeviceFeature feature) const
{
    const auto entry = m_features.constFind(feature);
    return entry != m_features.constEnd() ? entry->descriptor : QVariant();
}

QVariant Device::configuration(DeviceFeature feature) const
{
    const auto entry = m_features.constFind(feature);
    return entry != m_features.constEnd() ? entry->configuration : QVariant();
}

void Device::setConfiguration(DeviceFeature feature, QVariant configuration)
{
    m_features[feature].configuration = std::move(configuration);
    emit configurationChanged(feature);
}

void Device::setDescriptor(DeviceFeature feature, QVariant descriptor)
{
    DeviceFeatureData &data = m_features[feature];
    data.available = true;
    if (data.descriptor == descriptor)
        return;
    data.descriptor = std::move(descriptor);
    emit descriptorChanged(feature);
}

void Device::addFeature(DeviceFeature feature)
{
    m_features[feature].available = true;
    emit featuresChanged();
}

void Device::addFeature(QList<DeviceFeature> features)
{
    for (const DeviceFeature feature : std::as_const(features))
        addFeature(feature);
}

void Device::removeFeature(DeviceFeature feature)
{
    m_features[feature].available = false;
    emit featuresChanged();
}

void Device::removeFeature(QList<DeviceFeature> features)
{
    for (const DeviceFeature feature : std::as_const(features))
        removeFeature(feature);
}

void Device::removeAllFeatures()
{
    removeFeature(m_features.keys());
}

void Device::execute(DeviceFeature feature)
{
    qCInfo(LogCDevices) << "Feature execution requested:" << featureName(feature).constData();

    if (!isOpen()) {
        qCWarning(LogCDriver) << "Device is not open.";
        emit executed(feature, false, QVariant());
        return;
    }
    if (hasFeature(feature)) {
        executeImpl(feature);
        return;
    }
    qCWarning(LogCDriver) << "Feature not available:" << featureName(feature).constData();
    emit executed(feature, false, QVariant());
}

int Device::emitActionRequired(QString &&action)
{
    qCDebug(LogCDevices) << "Driver requested action:" << action;
    // Counted before the signal: a receiver may make another request.
    const int id = NEXT_ACTION_ID++;
    emit actionRequired(id, std::move(action));
    return id;
}

void Device::confirmAction(int actionId)
{
    emit actionConfirmed(actionId);
    confirmActionImpl(actionId);
}

void Device::abortAction(int actionId)
{
    abortActionImpl(actionId);
}

void Device::confirmActionImpl(int actionId)
{
    qCWarning(LogCDevices) << "Action confirmed, but not handled:" << actionId;
}

void Device::abortActionImpl(int) { }

int Device::errorCode() const
{
    return m_errorCode;
}

QString Device::errorTrId() const
{
    return mapErrorToTrId(m_errorCode);
}

QString Device::errorAdditionalInfoTrId() const
{
    return m_errorAdditionalInfoTrId;
}

void Device::setError(int code, const QString &additionalInfoTrId)
{
    if (code == m_errorCode && additionalInfoTrId == m_errorAdditionalInfoTrId)
        return;
    if (code != NO_DEVICE_ERROR) {
        qCWarning(LogCDevices) << "Device error:"
                               << QStringLiteral("0x%1").arg(code, 0, 16).toLatin1().constData()
                               << "\n\t" << mapErrorToTrId(code) << "\n\t" << additionalInfoTrId;
    }
    m_errorCode = code;
    m_errorAdditionalInfoTrId = additionalInfoTrId;
    emit errorChanged();
}

// Reads an entry as a `T`, converted where Qt can, or a default `T`.
template<typename T>
static T field(const QVariantHash &record, const char *key)
{
    return record.value(QString::fromLatin1(key)).value<T>();
}

template<typename T>
static void setField(QVariantHash &record, const char *key, const T &value)
{
    record.insert(QString::fromLatin1(key), QVariant::fromValue(value));
}

const char *AbsorbanceMeasurement_config::RAPID_MODE = "rapidMode";
const char *AbsorbanceMeasurement_config::WAVELENGTHS = "wavelengths";

bool AbsorbanceMeasurement_config::isRapidModeEnabled() const
{
    return field<bool>(*this, RAPID_MODE);
}

void AbsorbanceMeasurement_config::setRapidModeEnabled(bool rapidMode)
{
    setField(*this, RAPID_MODE, rapidMode);
}

QList<int> AbsorbanceMeasurement_config::wavelengths() const
{
    return field<QList<int>>(*this, WAVELENGTHS);
}

void AbsorbanceMeasurement_config::setWavelengths(QList<int> wavelengths)
{
    setField(*this, WAVELENGTHS, wavelengths);
}

const char *LuminescenceMeasurement_config::INTEGRATION_TIME = "integrationTime";
const char *LuminescenceMeasurement_config::SELECTED_WELLS = "selectedWells";

std::chrono::milliseconds LuminescenceMeasurement_config::integrationTime() const
{
    return field<std::chrono::milliseconds>(*this, INTEGRATION_TIME);
}

void LuminescenceMeasurement_config::setIntegrationTime(std::chrono::milliseconds integrationTime)
{
    setField(*this, INTEGRATION_TIME, integrationTime);
}

QVector<bool> LuminescenceMeasurement_config::selectedWells() const
{
    return field<QVector<bool>>(*this, SELECTED_WELLS);
}

void LuminescenceMeasurement_config::setSelectedWells(const QVector<bool> &selectedWells)
{
    setField(*this, SELECTED_WELLS, selectedWells);
}

Orientation_result::Orientation_result()
{
    setField(*this, ACCELERATION_X, 0);
    setField(*this, ACCELERATION_Y, 0);
    setField(*this, ACCELERATION_Z, 0);
    setTopSide(Side::Unknown);
}

Orientation_result::Orientation_result(float x, float y, float z, Side side)
{
    setAccelerationX(x);
    setAccelerationY(y);
    setAccelerationZ(z);
    setTopSide(side);
}

Orientation_result::Orientation_result(const QVariantHash &value)
    : QVariantHash(value)
{ }

float Orientation_result::accelerationX() const
{
    return value(QString::fromLatin1(ACCELERATION_X)).toFloat();
}

void Orientation_result::setAccelerationX(float acceleration)
{
    setField(*this, ACCELERATION_X, acceleration);
}

float Orientation_result::accelerationY() const
{
    return value(QString::fromLatin1(ACCELERATION_Y)).toFloat();
}

void Orientation_result::setAccelerationY(float acceleration)
{
    setField(*this, ACCELERATION_Y, acceleration);
}

float Orientation_result::accelerationZ() const
{
    return value(QString::fromLatin1(ACCELERATION_Z)).toFloat();
}

void Orientation_result::setAccelerationZ(float acceleration)
{
    setField(*this, ACCELERATION_Z, acceleration);
}

Orientation_result::Side Orientation_result::topSide() const
{
    return field<Side>(*this, TOP_SIDE);
}

void Orientation_result::setTopSide(Side side)
{
    setField(*this, TOP_SIDE, side);
}

const char *LedBarEffect_config::EFFECT = "effect";
const char *LedBarEffect_config::COLOR = "color";
const char *LedBarEffect_config::MODE = "mode";
const char *LedBarEffect_config::STATE = "state";

LedBarEffect_config::LedBarEffect_config()
{
    setEffect(LedBarEffect_Effect::Solid);
    setColor({255, 255, 255});
    setModes({});
    setField(*this, STATE, 0u);
}

LedBarEffect_config::LedBarEffect_config(LedBarEffect_Effect effect, const Color &color,
                                         Modes modes, unsigned char state)
{
    setEffect(effect);
    setColor(color);
    setModes(modes);
    setState(state);
}

LedBarEffect_config::LedBarEffect_config(const QVariantHash &value)
    : QVariantHash(value)
{ }

LedBarEffect_Effect LedBarEffect_config::effect() const
{
    return field<LedBarEffect_Effect>(*this, EFFECT);
}

void LedBarEffect_config::setEffect(LedBarEffect_Effect effect)
{
    setField(*this, EFFECT, effect);
}

LedBarEffect_config::Color LedBarEffect_config::color() const
{
    return field<Color>(*this, COLOR);
}

void LedBarEffect_config::setColor(const Color &color)
{
    setField(*this, COLOR, color);
}

LedBarEffect_config::Modes LedBarEffect_config::modes() const
{
    return field<Modes>(*this, MODE);
}

void LedBarEffect_config::setModes(const Modes &modes)
{
    setField(*this, MODE, modes);
}

unsigned char LedBarEffect_config::state() const
{
    return field<unsigned char>(*this, STATE);
}

void LedBarEffect_config::setState(const unsigned char &state)
{
    setField(*this, STATE, state);
}

} // namespace qel::devices
