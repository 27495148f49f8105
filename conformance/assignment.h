#ifndef QEL_CONFORMANCE_ASSIGNMENT_H
#define QEL_CONFORMANCE_ASSIGNMENT_H

#include "timelimits.h"

#include <qeldevices/device.h>

#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace qel::conformance {

/// How a driver's requests for user action are answered.
enum class Answers {
    Decline, ///< turned down: nobody is there who could do what is asked
    Confirm, ///< confirmed at once, in the belief that all is prepared
    Ask,     ///< a person does it and says so
};

/// A feature whose run has no end. It is not tried again.
struct Stuck
{
    devices::Device::DeviceFeature feature = devices::Device::DF_None;
    int rule = 0; ///< the rule that this breaks
    QString why;  ///< what was seen
};

/// What one process with the plugin has to know.
struct Assignment
{
    QString fileName; ///< the plugin file
    QString host;     ///< the plugin that has it in a process of its own; empty to load it directly
    QString driver;   ///< the driver to judge; empty when the plugin has one only
    QString serial;   ///< the instrument to judge; empty for the first
    bool isUnsafe = false; ///< whether parts of the instrument may be moved
    Answers answers = Answers::Decline;
    Limits limits;
    QVector<int> rules;   ///< the rules to judge, in this order
    int soakSeconds = 0;  ///< how long to try random sequences instead; 0 for not at all
    quint32 seed = 0;     ///< of the random sequences
    QStringList steps;    ///< the one sequence to try instead
    QStringList hung;     ///< calls that did not return in an earlier process
    QVector<Stuck> stuck; ///< features whose run had no end in an earlier process

    QJsonObject toJson() const;
    static Assignment fromJson(const QJsonObject &json);
};

/// As a message between the processes.
QJsonObject toJson(const Stuck &stuck);
Stuck stuckFromJson(const QJsonObject &json);

} // namespace qel::conformance

#endif
