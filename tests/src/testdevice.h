#ifndef TESTDEVICE_H
#define TESTDEVICE_H

#include "journal.h"

#include <qeldevices/device.h>

#include <QtCore/QMetaMethod>

/// Notes every signal of a device, with its arguments and the state that a receiver sees.
class SignalNotes : public QObject
{
public:
    explicit SignalNotes(const qel::devices::Device *device)
        : m_device(device)
    {
        const QMetaObject &meta = device->staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            if (method.methodType() == QMetaMethod::Signal && !method.attributes())
                QMetaObject::connect(device, i, this, staticMetaObject.methodCount() + i);
        }
    }

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id < 0 || call != QMetaObject::InvokeMetaMethod)
            return id;
        const QMetaMethod method = m_device->staticMetaObject.method(id);
        QStringList texts{method.name()};
        for (int i = 0; i < method.parameterCount(); ++i)
            texts << text(method.parameterTypes().at(i), arguments[i + 1]);
        Journal::note(texts.join(' ') + " |" + state());
        return -1;
    }

private:
    static QString text(const QByteArray &type, const void *argument)
    {
        if (type == "QString")
            return *static_cast<const QString *>(argument);
        if (type == "bool")
            return QVariant(*static_cast<const bool *>(argument)).toString();
        if (type != "QVariant")
            return QString::number(*static_cast<const int *>(argument));
        const auto *value = static_cast<const QVariant *>(argument);
        return value->isValid() ? value->toString() : QStringLiteral("invalid");
    }

    QString state() const
    {
        QString state = m_device->isOpen() ? " open" : "";
        if (m_device->isBusy())
            state += " busy";
        for (int number = 0; number < 12; ++number) {
            if (m_device->hasFeature(qel::devices::Device::DeviceFeature(number)))
                state += ' ' + QString::number(number);
        }
        return state;
    }

    const qel::devices::Device *m_device;
};

/// The smallest device: it notes its signals and the operations that reach it, and does nothing.
class TestDevice : public qel::devices::Device
{
public:
    explicit TestDevice(const qel::devices::DeviceInfo &info = {qel::devices::DeviceInfo::Simulator,
                                                                "driver",
                                                                "location",
                                                                {},
                                                                "serial"},
                        QObject *parent = nullptr)
        : Device(info, parent)
        , m_notes(this)
    { }

    bool open() override
    {
        Journal::note("open()");
        return true;
    }
    void close() override
    {
        Journal::note("close()");
    }
    void update() override
    {
        Journal::note("update()");
    }
    void reset() override
    {
        Journal::note("reset()");
    }

protected:
    void executeImpl(DeviceFeature feature) override
    {
        Journal::note(QStringLiteral("executeImpl(%1)").arg(feature));
    }

private:
    SignalNotes m_notes;
};

#endif
