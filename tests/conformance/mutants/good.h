#ifndef GOOD_H
#define GOOD_H

#include <qeldevices/device.h>
#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceerrors.h>

#include <QtCore/QDateTime>
#include <QtCore/QTimer>

#include <functional>

using qel::devices::Device;
using qel::devices::DeviceDriver;
using qel::devices::DeviceInfo;

/// A reader that does everything right, in a few milliseconds. Mutants override one thing each.
class GoodDevice : public Device
{
public:
    explicit GoodDevice(const DeviceInfo &info);

    bool open() override;
    void close() override;
    void update() override { }
    void reset() override;

protected:
    void executeImpl(DeviceFeature feature) override;
    void confirmActionImpl(int actionId) override;
    void abortActionImpl(int actionId) override;

    /// The connection stands: the last step of opening.
    virtual void connected();
    virtual void fillFeatures();
    virtual QVariant descriptorOf(DeviceFeature feature) const;
    /// Whether the configuration of `feature` is one that its descriptor allows.
    virtual bool accepts(DeviceFeature feature) const;
    /// Whether a setting with the description `rules` may have the value.
    virtual bool allows(const QVariantHash &rules, const QVariant &value) const;
    /// Does the work of `feature`, and begins with its first step.
    virtual void start(DeviceFeature feature);
    virtual void askForEmptySlot();
    virtual void reportProgress(double progress);
    virtual QVariant resultOf(DeviceFeature feature) const;
    virtual QVariantHash measured(DeviceFeature feature) const;
    /// One read of the plate, with a selection of its wells or all.
    virtual QVector<double> readPlate(const QVector<bool> &selected) const;
    /// What `key` is set to in the run at work.
    virtual QVariant setTo(DeviceFeature feature, const char *key) const;
    /// A second execute() during a run.
    virtual void refuse(DeviceFeature feature, int code, const QString &details);
    /// The only way out of a run.
    virtual void finish(bool ok);
    virtual void emitEnding(DeviceFeature feature, bool ok, const QVariant &result);
    /// Stops whatever is going on, without a word; the feature that was at work.
    virtual DeviceFeature stopWork();

    /// The plug of the instrument was pulled.
    virtual void unplugged();
    /// A plate was put in, or taken out.
    virtual void slotChanged();

    void after(int milliseconds, std::function<void()> next);
    void step();

    bool m_isOpening = false;
    DeviceFeature m_running = DF_None;
    QVariantHash m_configuration; // of the run at work
    QDateTime m_startedAt;
    int m_request = -1;
    int m_step = 0;
    QTimer m_timer;
    std::function<void()> m_next;

private:
    void look();

    QTimer m_look;
    bool m_hasPlate = false;
};

/// The file's own name: one plugin is all mutants, under many names.
QString mutantName();

/// Whether `what` has been done by hand, "unplug" or "plate": a file of the mutant's name and that
/// suffix stands in the folder that the environment variable GOOD_BENCH names.
bool isDone(const char *what);

/// Lists two of these readers.
class GoodDriver : public DeviceDriver
{
public:
    QString name() override
    {
        return QStringLiteral("good");
    }
    QList<DeviceInfo> availableDevices() override;
    Device *createDevice(const DeviceInfo &info) override;

protected:
    /// Whether the first of them is listed.
    virtual bool isThere();
    virtual Device *makeDevice(const DeviceInfo &info)
    {
        return new GoodDevice(info);
    }
};

#endif
