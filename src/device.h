/// @file
/// Device, and the records that its features take and deliver.
#ifndef QELDEVICES_DEVICE_H
#define QELDEVICES_DEVICE_H

#include "deviceinfo.h"
#include "qeldevices_global.h"

#include <QtCore/QFlags>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <chrono>

// Applications connect and invoke by these signatures, in which the feature type stays unqualified.
// clazy:excludeall=fully-qualified-moc-types

namespace qel::devices {

Q_NAMESPACE_EXPORT(QELDEVICES_EXPORT)

/// What an LED bar shows: the "effect" of LedBarEffect_config.
enum class LedBarEffect_Effect : unsigned char {
    Solid = 0,     ///< one steady colour
    Progress = 1,  ///< a bar that fills
    Cylon = 2,     ///< a light that runs to and fro
    Rainbow = 3,   ///< all colours in turn
    Blinking = 4,  ///< on and off
    Breathing = 5, ///< slowly brighter and darker
};
Q_ENUM_NS(LedBarEffect_Effect)

/// Whether a plate is in the instrument's slot. The library only publishes it.
enum class SlotStatus : int {
    Empty = 0,    ///< no plate
    Occupied = 1, ///< a plate
    Unknown = 2,  ///< the instrument cannot tell
};
Q_ENUM_NS(SlotStatus)

/// One instrument: its identity, its state, its features, their execution and its error.
///
/// Applications get a device from DeviceBroker::createDevice() and own it. It starts closed, idle,
/// without error and without features. Everything an application needs is a signal, a slot, an
/// invokable method or a property, so that a device can also be driven through its meta-object.
///
/// A run: open() it and wait for openChanged(); see what it can do with hasFeature() and
/// descriptor(); setConfiguration(); execute(); wait for executed(). A driver may ask for the
/// user's help in between with actionRequired(), and reports what went wrong in errorCode().
///
/// A driver subclasses Device and reports through the members grouped as "Driver's side". Every
/// signal is emitted after the new state is stored, so a receiver reads the new value from the
/// device.
///
/// A device is used from the thread that owns it; the library takes no locks.
class QELDEVICES_EXPORT Device : public QObject
{
    Q_OBJECT
    /// Whether the device is open; only an open device executes features.
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY openChanged)
    /// Whether the device is at work.
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY busyChanged)
    /// What the instrument is called.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    /// The instrument's serial number.
    Q_PROPERTY(QString serial READ serial NOTIFY serialChanged)
    /// Where the instrument is attached, in the driver's own words.
    Q_PROPERTY(QString location READ location CONSTANT)
    /// The name of the driver that serves the instrument.
    Q_PROPERTY(QString driver READ driver CONSTANT)
    /// The current error, a DeviceErrorCode; 0 is none.
    Q_PROPERTY(int errorCode READ errorCode NOTIFY errorChanged)
    /// The translation id of the current error.
    Q_PROPERTY(QString errorTrId READ errorTrId NOTIFY errorChanged)
    /// The translation id of details of the error; empty when there are none.
    Q_PROPERTY(QString errorAdditionalInfoTrId READ errorAdditionalInfoTrId NOTIFY errorChanged)

public:
    /// What a device may be able to do. The values are part of the interface.
    enum DeviceFeature : int {
        DF_None = 0,                    ///< nothing; treated like every other value
        DF_AmbientTemperature = 1,      ///< measures the temperature inside
        DF_AbsorbanceMeasurement = 2,   ///< takes an AbsorbanceMeasurement_config
        DF_LuminescenceMeasurement = 3, ///< takes a LuminescenceMeasurement_config
        DF_Calibration = 4,             ///< calibrates itself
        DF_PlateDetection = 5,          ///< tells whether a plate is inserted
        DF_FirmwareInfo = 6,            ///< tells its firmware's version
        DF_FirmwareUpdate = 7,          ///< takes a new firmware
        DF_ReferenceNumber = 8,         ///< tells its maker's reference number
        DF_Orientation = 9,             ///< delivers an Orientation_result
        DF_PartsAligned = 10,           ///< tells whether its moving parts are aligned
        DF_LedBarEffect = 11,           ///< takes a LedBarEffect_config
    };
    Q_ENUM(DeviceFeature)

    /// What the feature table holds of one feature.
    struct DeviceFeatureData
    {
        bool available = false; ///< whether the device has the feature
        QVariant descriptor;    ///< describes the feature; set by the driver
        QVariant configuration; ///< how the feature is to run; set by the application
    };

    /// The flags of setStatus().
    enum StatusFlag {
        SF_Open = 0x1, ///< the device is open
        SF_Busy = 0x2, ///< the device is busy
    };

    /// Creates a closed device without features that keeps a copy of `info` as its identity.
    /// With a `parent`, the parent deletes it; without one, whoever holds the pointer does.
    Device(const DeviceInfo &info, QObject *parent);
    ~Device() override = 0;

    /// What the instrument is called.
    QString name() const;
    /// The instrument's serial number.
    QString serial() const;
    /// Where the instrument is attached, in the driver's own words.
    QString location() const;
    /// The name of the driver that serves the instrument.
    QString driver() const;
    /// The identity of the instrument, with its present name and serial number.
    DeviceInfo deviceInfo() const;
    /// Whether the device is open.
    bool isOpen() const;
    /// Whether the device is busy. execute() does not look at it; the driver decides what a second
    /// run means.
    bool isBusy() const;

    /// The current error: a DeviceErrorCode, or any other number that the driver has set. 0 is
    /// none.
    int errorCode() const;
    /// The translation id of errorCode(), for `qtTrId()`; that of ERROR_DEVICE_UNKNOWN for an
    /// unlisted code.
    QString errorTrId() const;
    /// A second translation id with details of the error; empty when there are none.
    QString errorAdditionalInfoTrId() const;

    /// Whether the device has `feature`.
    Q_INVOKABLE bool hasFeature(DeviceFeature feature) const;
    /// What the driver says of `feature`; invalid when it has said nothing. Kept when the feature
    /// is removed.
    Q_INVOKABLE QVariant descriptor(DeviceFeature feature) const;
    /// The configuration set last for `feature`; invalid when none was.
    Q_INVOKABLE QVariant configuration(DeviceFeature feature) const;
    /// Stores how `feature` is to run and emits configurationChanged(), also for an equal value.
    /// Any feature and any value are accepted; the driver judges them when it runs.
    Q_INVOKABLE void setConfiguration(DeviceFeature feature, QVariant configuration);

    /// @name Driver's side
    /// What a driver's subclass and its helper objects report with. Applications leave it alone.
    /// @{

    /// Renames the instrument; emits nameChanged() on a change.
    void setName(const QString &name);
    /// Sets the serial number; emits serialChanged() on a change.
    void setSerial(const QString &serial);
    /// Sets the open flag; emits openChanged() on a change.
    void setOpen(bool open);
    /// Sets the busy flag; emits busyChanged() on a change.
    void setBusy(bool busy);
    /// Sets both flags to what `status` holds; other bits are ignored. The open flag goes first:
    /// receivers of openChanged() still see the old busy flag.
    void setStatus(QFlags<StatusFlag> status);

    /// Makes `feature` available and stores its descriptor. Emits descriptorChanged() when the
    /// descriptor differs from the one stored; never featuresChanged().
    void setDescriptor(DeviceFeature feature, QVariant descriptor);
    /// Makes `feature` available; emits featuresChanged() on every call.
    void addFeature(DeviceFeature feature);
    /// As addFeature() for each of `features`, in their order.
    void addFeature(QList<DeviceFeature> features);
    /// Makes `feature` unavailable; emits featuresChanged() on every call. Its descriptor and its
    /// configuration are kept and come back with it.
    void removeFeature(DeviceFeature feature);
    /// As removeFeature() for each of `features`, in their order.
    void removeFeature(QList<DeviceFeature> features);
    /// As removeFeature() for every feature ever named, in ascending order; features that receivers
    /// of featuresChanged() add meanwhile stay.
    void removeAllFeatures();

    /// Asks the user for an action: emits actionRequired() and returns the request's id, unique
    /// among all devices of the process.
    ///
    /// The id is returned after direct receivers have: an answer may reach confirmActionImpl() or
    /// abortActionImpl() first. Two threads must not call it at the same time.
    /// @param action a translation id of what the user is to do
    int emitActionRequired(QString &&action);

    /// Sets the error. Logs a warning unless `code` is 0, and emits errorChanged(); an equal pair
    /// does neither.
    /// @param code a DeviceErrorCode; NO_DEVICE_ERROR clears the error
    /// @param additionalInfoTrId a translation id with details, or empty
    void setError(int code, const QString &additionalInfoTrId);
    /// @}

Q_SIGNALS:
    /// The device was opened or closed.
    void openChanged(bool open);
    /// The device began or finished work.
    void busyChanged(bool isBusy);
    /// A value of a running feature, its progress for instance. Emitted by drivers only.
    void transientValue(DeviceFeature feature, QVariant value);
    /// A run of `feature` ended: `ok` with its `result`, or not. Also emitted when execute()
    /// refuses; the result is invalid then.
    void executed(DeviceFeature feature, bool ok, QVariant result = QVariant());
    /// name() has a new value.
    void nameChanged();
    /// serial() has a new value.
    void serialChanged();
    /// The descriptor of `feature` has a new value.
    void descriptorChanged(DeviceFeature feature);
    /// The configuration of `feature` was set.
    void configurationChanged(DeviceFeature feature);
    /// A feature was added or removed.
    void featuresChanged();
    /// The error has a new code or new details.
    void errorChanged();
    /// The driver asks the user for an action. Answer with confirmAction() or abortAction().
    /// @param actionId the number of the request
    /// @param action a translation id of what the user is to do
    void actionRequired(int actionId, QString action);
    /// The application has confirmed a request.
    void actionConfirmed(int actionId);

public Q_SLOTS:
    /// Opens the instrument. Wait for openChanged(): a driver may take its time. False when the
    /// driver knows at once that it cannot; errorCode() says why.
    virtual bool open() = 0;
    /// Closes the instrument and ends what it is doing.
    virtual void close() = 0;
    /// Reads state that the instrument does not report by itself.
    virtual void update() = 0;
    /// Brings the instrument back to a state in which it works.
    virtual void reset() = 0;
    /// Runs `feature` with its configuration. A closed device, or one without the feature, refuses:
    /// a warning in "qel.devices.driver" and `executed(feature, false, QVariant())`. Otherwise the
    /// driver runs it and emits executed(), now or later.
    void execute(DeviceFeature feature);
    /// Tells the driver that the user has done what request `actionId` asked for. Emits
    /// actionConfirmed(). The id is not checked.
    void confirmAction(int actionId);
    /// Tells the driver that the user will not do what request `actionId` asked for. The id is not
    /// checked.
    void abortAction(int actionId);

protected:
    /// Carries out `feature`. Called on an open device that has it, also when it is busy. Ends in
    /// one emission of executed(), now or later.
    virtual void executeImpl(DeviceFeature feature) = 0;
    /// The user has done what request `actionId` asked for. This implementation logs a warning.
    virtual void confirmActionImpl(int actionId);
    /// The user will not do what request `actionId` asked for. This implementation does nothing.
    virtual void abortActionImpl(int actionId);

private:
    bool m_open = false;
    bool m_busy = false;
    int m_errorCode = 0;
    QString m_errorAdditionalInfoTrId;
    DeviceInfo m_deviceInfo;
    QMap<DeviceFeature, DeviceFeatureData> m_features;

    static int NEXT_ACTION_ID;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(QFlags<Device::StatusFlag>)

// The payload records below are QVariantHashes with typed access to fixed keys. They add no state,
// travel inside a QVariant as plain hashes, and keep entries under keys they do not know. A getter
// yields its type's default for a missing entry or one that Qt cannot convert.

/// The configuration of Device::DF_AbsorbanceMeasurement.
///
/// A new record is empty. `AbsorbanceMeasurement_config{variant.toHash()}` reads a received one.
class QELDEVICES_EXPORT AbsorbanceMeasurement_config : public QVariantHash
{
public:
    static const char *RAPID_MODE;  ///< "rapidMode", a `bool`
    static const char *WAVELENGTHS; ///< "wavelengths", a `QList<int>`

    /// Whether to measure faster and less exactly.
    bool isRapidModeEnabled() const;
    /// Sets whether to measure faster and less exactly.
    void setRapidModeEnabled(bool rapidMode);
    /// The wavelengths to measure at, in nm.
    QList<int> wavelengths() const;
    /// Sets the wavelengths to measure at, in nm. The driver says which it can do.
    void setWavelengths(QList<int> wavelengths);
};

/// The configuration of Device::DF_LuminescenceMeasurement.
///
/// A new record is empty. `LuminescenceMeasurement_config{variant.toHash()}` reads a received one.
class QELDEVICES_EXPORT LuminescenceMeasurement_config : public QVariantHash
{
public:
    static const char *INTEGRATION_TIME; ///< "integrationTime", a `std::chrono::milliseconds`
    static const char *SELECTED_WELLS;   ///< "selectedWells", a `QVector<bool>`

    /// How long to count light in each well.
    std::chrono::milliseconds integrationTime() const;
    /// Sets how long to count light in each well. The driver says what it can do.
    void setIntegrationTime(std::chrono::milliseconds integrationTime);
    /// One flag a well, row by row from A1: whether to measure it.
    QVector<bool> selectedWells() const;
    /// Sets which wells to measure: one flag a well, row by row from A1.
    void setSelectedWells(const QVector<bool> &selectedWells);
};

/// The result of Device::DF_Orientation: how the instrument stands.
class QELDEVICES_EXPORT Orientation_result : public QVariantHash
{
public:
    static constexpr char ACCELERATION_X[] = "accelerationX"; ///< a `float`
    static constexpr char ACCELERATION_Y[] = "accelerationY"; ///< a `float`
    static constexpr char ACCELERATION_Z[] = "accelerationZ"; ///< a `float`
    static constexpr char TOP_SIDE[] = "topSide";             ///< a `Side`

    /// A side of the instrument.
    enum class Side : int {
        Top = 0,     ///< the side meant to face up
        Bottom = 1,  ///< the side it stands on
        Unknown = 2, ///< not known, or none in particular
        Front = 3,   ///< the side towards the user
        Back = 4,    ///< the side opposite Front
        Left = 5,    ///< the left side seen from the front
        Right = 6,   ///< the right side seen from the front
    };

    /// No acceleration, and Side::Unknown on top.
    Orientation_result();
    /// The accelerations along the instrument's axes, in the driver's unit, and the side facing up.
    Orientation_result(float x, float y, float z, Side side);
    /// Reads a received value.
    explicit Orientation_result(const QVariantHash &value);

    /// The acceleration along the x axis, in the driver's unit.
    float accelerationX() const;
    /// Sets the acceleration along the x axis.
    void setAccelerationX(float acceleration);
    /// The acceleration along the y axis, in the driver's unit.
    float accelerationY() const;
    /// Sets the acceleration along the y axis.
    void setAccelerationY(float acceleration);
    /// The acceleration along the z axis, in the driver's unit.
    float accelerationZ() const;
    /// Sets the acceleration along the z axis.
    void setAccelerationZ(float acceleration);
    /// The side that faces up.
    Side topSide() const;
    /// Sets the side that faces up.
    void setTopSide(Side side);
};

/// The configuration of Device::DF_LedBarEffect.
class QELDEVICES_EXPORT LedBarEffect_config : public QVariantHash
{
public:
    static const char *EFFECT; ///< "effect", an `LedBarEffect_Effect`
    static const char *COLOR;  ///< "color", a `Color`
    static const char *MODE;   ///< "mode", a `Modes`
    static const char *STATE;  ///< "state", an `unsigned char`

    /// A colour of the light; black by default.
    struct Color
    {
        unsigned char red = 0;   ///< 0 to 255
        unsigned char green = 0; ///< 0 to 255
        unsigned char blue = 0;  ///< 0 to 255
    };

    /// How an effect is played.
    enum Mode : unsigned char {
        Reversed = 0x1, ///< from the last light to the first
        Mirrored = 0x2, ///< from both ends to the middle
        Once = 0x4,     ///< one time instead of for ever
    };
    /// A set of mode flags.
    Q_DECLARE_FLAGS(Modes, Mode)

    /// Solid white, no mode flag, state 0.
    LedBarEffect_config();
    /// The four values.
    LedBarEffect_config(LedBarEffect_Effect effect, const Color &color, Modes modes,
                        unsigned char state);
    /// Reads a received value.
    explicit LedBarEffect_config(const QVariantHash &value);

    /// What the bar shows.
    LedBarEffect_Effect effect() const;
    /// Sets what the bar shows.
    void setEffect(LedBarEffect_Effect effect);
    /// The colour of the light.
    Color color() const;
    /// Sets the colour of the light.
    void setColor(const Color &color);
    /// How the effect is played.
    Modes modes() const;
    /// Sets how the effect is played.
    void setModes(const Modes &modes);
    /// A position within the effect; its meaning is the driver's, such as the length of a bar.
    unsigned char state() const;
    /// Sets the position within the effect.
    void setState(const unsigned char &state);
};

Q_DECLARE_OPERATORS_FOR_FLAGS(LedBarEffect_config::Modes)

} // namespace qel::devices

Q_DECLARE_METATYPE(std::chrono::milliseconds)
Q_DECLARE_METATYPE(qel::devices::Orientation_result::Side)
Q_DECLARE_METATYPE(qel::devices::LedBarEffect_config::Color)
Q_DECLARE_METATYPE(qel::devices::LedBarEffect_config::Modes)

#endif
