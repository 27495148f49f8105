#include "mutants.h"

#include "mutants_p.h"

// The build makes a plugin of each.
static const QVector<Mutant> &mutants()
{
    static const QVector<Mutant> all = driversMutants() + openingMutants() + runsMutants()
        + requestsMutants() + lifeMutants() + resultsMutants() + surroundingsMutants();
    return all;
}

QStringList mutantNames()
{
    QStringList names;
    for (const Mutant &mutant : mutants())
        names += QLatin1String(mutant.name);
    return names;
}

std::shared_ptr<qel::devices::DeviceDriver> makeDriver(const QString &name)
{
    for (const Mutant &mutant : mutants()) {
        if (QLatin1String(mutant.name) == name)
            return mutant.make();
    }
    return std::make_shared<GoodDriver>();
}
