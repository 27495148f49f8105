#ifndef SIMULATOR_MODELS_H
#define SIMULATOR_MODELS_H

#include <qeldevices/device.h>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace qel::simulator {

/// A kind of plate.
struct PlateFormat
{
    int rows = 0;          ///< 0 where there is no plate
    int columns = 0;       ///< 0 where there is no plate
    double wellArea = 0;   ///< cross-section of a well in mm²
    double wellVolume = 0; ///< what a well usually holds, in µl

    /// Wells of a plate.
    int wells() const
    {
        return rows * columns;
    }
};

/// All plates that instruments can be made for, the smallest first.
const QVector<PlateFormat> &plateFormats();

/// What a kind of simulated instrument can do.
struct Model
{
    QString id;              ///< what a scenario calls it
    QString name;            ///< what its instruments are called unless the scenario says otherwise
    QString referenceNumber; ///< its maker's order number
    PlateFormat format;      ///< of the plates it takes
    QList<int> wavelengths;  ///< of its filters, in nm; empty where it has none
    QList<qel::devices::Device::DeviceFeature> features;
};

/// All models, in the order in which they are documented.
const QList<Model> &models();

} // namespace qel::simulator

#endif
