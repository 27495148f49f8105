#ifndef MUTANTS_P_H
#define MUTANTS_P_H

#include "good.h"

#include <QtCore/QVector>

#include <memory>

/// One plugin that is wrong in the one way that its name says, or good in an unusual way.
struct Mutant
{
    const char *name;
    std::shared_ptr<qel::devices::DeviceDriver> (*make)();
};

template<typename MutantDevice>
struct DriverOf : GoodDriver
{
    Device *makeDevice(const DeviceInfo &info) override
    {
        return new MutantDevice(info);
    }
};

template<typename MutantDriver>
std::shared_ptr<qel::devices::DeviceDriver> makeDriver()
{
    return std::make_shared<MutantDriver>();
}

template<typename MutantDevice>
std::shared_ptr<qel::devices::DeviceDriver> makeDriverOf()
{
    return std::make_shared<DriverOf<MutantDevice>>();
}

// By what they are wrong in.
QVector<Mutant> driversMutants();
QVector<Mutant> openingMutants();
QVector<Mutant> runsMutants();
QVector<Mutant> requestsMutants();
QVector<Mutant> lifeMutants();
QVector<Mutant> resultsMutants();
QVector<Mutant> surroundingsMutants();

#endif
