#ifndef SIMULATOR_MODELS_H
#define SIMULATOR_MODELS_H

#include <qeldevices/device.h>

#include <QtCore/QList>
#include <QtCore/QString>

namespace qel::simulator {

/// What a kind of simulated instrument can do.
struct Model
{
    QString id;              ///< what a scenario calls it
    QString name;            ///< what its instruments are called unless the scenario says otherwise
    QString referenceNumber; ///< its maker's order number
    int rows;                ///< of a plate; 0 where it takes none
    int columns;             ///< of a plate
    double wellArea;         ///< cross-section of a well in mm²
    double wellVolume;       ///< what a well usually holds, in µl
    QList<int> wavelengths;  ///< of its filters, in nm; empty where it has none
    QList<qel::devices::Device::DeviceFeature> features;

    /// Wells of a plate.
    int wells() const
    {
        return rows * columns;
    }
};

/// All models, in the order in which they are documented.
const QList<Model> &models();

/// The model called `id`, or null. It lives as long as the plugin.
const Model *findModel(const QString &id);

} // namespace qel::simulator

#endif
