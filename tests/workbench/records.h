#ifndef TESTS_WORKBENCH_RECORDS_H
#define TESTS_WORKBENCH_RECORDS_H

#include <qelfrontend/runjson.h>

#include <cmath>

constexpr double notMeasured = NAN;

/// A run of a plate of 2 × 3 wells, one of them not measured, one saturated.
inline qel::frontend::RunRecord record(const QDateTime &time,
                                       const QString &serial = QStringLiteral("A-17"))
{
    const QVector<double> values{0.5, 0.25, notMeasured, 4.0, 1.0 / 3, 0.125};
    qel::frontend::Outcome outcome;
    outcome.kind = qel::frontend::Outcome::Result;
    outcome.startedAt = time;
    outcome.result = QVariantHash{{"rows", 2},
                                  {"columns", 3},
                                  {"unit", "OD"},
                                  {"startedAt", time},
                                  {"temperature", 22.5},
                                  {"values", QVariantList{QVariant::fromValue(values)}},
                                  {"wavelengths", QVariant::fromValue(QList<int>{450})}};
    using qel::devices::Device;
    using qel::devices::DeviceInfo;
    const DeviceInfo device(DeviceInfo::UsbHid, "driver", "port 1", "Reader", serial);
    return {device,     {},     Device::DF_AbsorbanceMeasurement, QVariantHash{{"maximum", 4.0}},
            QVariant(), outcome};
}

inline const QDateTime noon(QDate(2026, 3, 1), QTime(12, 0), Qt::UTC);

#endif
